// Property lists as files: reading XML and binary ones, writing XML ones so that no reader ever
// sees half a file.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/PropertyList.h"

namespace kestro {

// Absent when the text is no property list, is nested deeper than a hundred levels, or its top is
// no dictionary. Members that have no counterpart here (unique identifiers) are left out.
std::optional<PropertyListDictionary> propertyListFromText(std::string_view text);

// The XML form, empty when it cannot be made. Dates keep whole seconds, as that form does.
std::string propertyListAsXml(const PropertyListDictionary& dictionary);

// Absent when there is no such file, it is not a regular one, it is larger than 16 MB, or it cannot
// be read.
std::optional<std::string> readWholeFile(const std::filesystem::path& path);

// Writes a file of the owner's own beside `path`, brings it to the disk and renames it. False when
// any of that fails, or the text is empty; the old file then stands, unless the last step, the
// syncing of the directory, failed.
bool replaceFile(const std::filesystem::path& path, std::string_view text);

}  // namespace kestro
