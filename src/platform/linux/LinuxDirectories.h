// The user's base directories, as the XDG Base Directory Specification has them.
#pragma once

#include <filesystem>
#include <vector>

namespace kestro {

std::filesystem::path homeDirectory();
std::filesystem::path configurationDirectory();  // $XDG_CONFIG_HOME/kestro
std::filesystem::path defaultDataDirectory();    // $XDG_DATA_HOME/kestro
// The directories that hold desktop files, most important first.
std::vector<std::filesystem::path> applicationDirectories();

// Makes the directory and what is missing above it, and makes it readable by its owner alone. False
// when that cannot be had.
bool makePrivateDirectory(const std::filesystem::path& directory);

}  // namespace kestro
