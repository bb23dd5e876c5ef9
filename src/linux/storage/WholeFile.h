// Files that are read and written as a whole, the latter so that no reader ever sees half of one.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

// Absent when there is no such file, it is not a regular one, it is larger than 16 MB, or it cannot
// be read.
std::optional<std::string> readWholeFile(const std::filesystem::path& path);

// Writes a file of the owner's own beside `path`, brings it to the disk and renames it. False when
// any of that fails, or the text is empty; the old file then stands, unless the last step, the
// syncing of the directory, failed.
bool replaceFile(const std::filesystem::path& path, std::string_view text);

}  // namespace kestro
