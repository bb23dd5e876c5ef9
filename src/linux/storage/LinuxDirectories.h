// The user's base directories, by the XDG base directory rules.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace kestro {

std::filesystem::path homeDirectory();
std::filesystem::path configurationDirectory();  // $XDG_CONFIG_HOME/kestro
std::filesystem::path defaultDataDirectory();    // $XDG_DATA_HOME/kestro
// As user-dirs.dirs names it, else Documents in the home directory.
std::filesystem::path documentsDirectory();
// The directories that hold desktop files, most important first.
std::vector<std::filesystem::path> applicationDirectories();

// Makes the directory, for its owner alone, and what is missing above it. One that exists stays as
// it is. False when that cannot be had.
bool makePrivateDirectory(const std::filesystem::path& directory);

// What the text of a user-dirs.dirs file says about documents: a path under $HOME or a whole one.
// Absent when it says nothing that can be used.
std::optional<std::filesystem::path> documentsDirectoryIn(std::string_view userDirectories,
                                                          const std::filesystem::path& home);

}  // namespace kestro
