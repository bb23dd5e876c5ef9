// Files and folders that nobody but the user may read, whatever the process's mask of modes is.
// They throw std::filesystem::filesystem_error.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace kestro {

// What tells a file from another of the same name.
struct FileIdentity {
  std::uint64_t device;
  std::uint64_t number;
  bool operator==(const FileIdentity&) const = default;
};

// Makes the folder and those above it that are missing, all for their owner alone. One that is
// there stays as it is.
void makePrivateFolder(const std::filesystem::path& folder);
// Closes a folder of the user's own to others. False when it stays open: it is somebody else's, or
// one that everybody shares (/tmp).
bool closeFolder(const std::filesystem::path& folder);
// A new, empty file.
void createPrivateFile(const std::filesystem::path& file);
void writePrivateFile(const std::filesystem::path& file, const std::string& text);

bool isWritable(const std::filesystem::path& file);
// Absent when there is no such file.
std::optional<FileIdentity> identityOf(const std::filesystem::path& file);

}  // namespace kestro
