// The text form of property lists: reading XML and binary ones, writing XML ones.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/PropertyList.h"

namespace kestro {

// Absent when the text is no property list, is nested deeper than a hundred levels, or its top is
// no dictionary. Members that have no counterpart here (unique identifiers) are left out.
std::optional<PropertyListDictionary> propertyListFromText(std::string_view text);

// The XML form, empty when it cannot be made. Dates keep whole seconds, as that form does.
std::string propertyListAsXml(const PropertyListDictionary& dictionary);

}  // namespace kestro
