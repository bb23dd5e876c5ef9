// The user's base directories, by the XDG base directory rules.
#pragma once

#include <filesystem>
#include <vector>

namespace kestro {

std::filesystem::path homeDirectory();
std::filesystem::path configurationDirectory();  // $XDG_CONFIG_HOME/kestro
std::filesystem::path defaultDataDirectory();    // $XDG_DATA_HOME/kestro
// The directories that hold desktop files, most important first.
std::vector<std::filesystem::path> applicationDirectories();

// Makes the directory, for its owner alone, and what is missing above it. One that exists stays as
// it is. False when that cannot be had.
bool makePrivateDirectory(const std::filesystem::path& directory);

}  // namespace kestro
