// The installed applications' desktop files, read once and again when a directory of them changes.
// Main thread only.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

struct DesktopEntry {
  std::string identifier;  // without ".desktop", directories joined with "-"
  std::filesystem::path path;
  std::string name;         // in the user's language where the file has it
  std::string windowClass;  // StartupWMClass, empty without one
  std::string program;      // the last path component of Exec's program, empty without one
  std::string exec;         // what starts it, as the file says
  bool opensWebAddresses = false;
};

// Absent when the text has no application's entry.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                              const std::vector<std::string>& languages);

class DesktopEntries {
 public:
  // `directories`: the most important first; an entry there hides others of its identifier.
  DesktopEntries(std::vector<std::filesystem::path> directories, std::vector<std::string> languages)
      : directories_(std::move(directories)), languages_(std::move(languages)) {}

  // In order of importance, and of the path inside a directory. Looks for changes at most once in
  // five seconds.
  const std::vector<DesktopEntry>& all();
  // Grows whenever the entries were read again.
  std::uint64_t version();

 private:
  using DirectoryTimes = std::map<std::filesystem::path, std::filesystem::file_time_type>;

  void refresh();
  bool hasChanged() const;
  void readDirectory(const std::filesystem::path& top);
  void noteTime(const std::filesystem::path& directory);

  std::vector<std::filesystem::path> directories_;
  std::vector<std::string> languages_;
  std::vector<DesktopEntry> entries_;
  DirectoryTimes times_;
  std::chrono::steady_clock::time_point lookedAt_{};
  std::uint64_t version_ = 0;
};

}  // namespace kestro
