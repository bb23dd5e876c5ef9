#include "linux/storage/LinuxDirectories.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <string>

#include "foundation/PrivateFiles.h"
#include "linux/storage/WholeFile.h"

namespace kestro {
namespace {

namespace fs = std::filesystem;

// The XDG base directory rules want relative paths in these variables to be ignored.
fs::path directoryOfVariable(const char* variable, const fs::path& otherwise) {
  const char* value = std::getenv(variable);
  if (!value || value[0] != '/') return otherwise;
  return value;
}

// What stands between the double quotes at the beginning; a backslash protects what follows it.
std::optional<std::string> quoted(std::string_view text) {
  if (!text.starts_with('"')) return std::nullopt;
  std::string result;
  for (std::size_t position = 1; position < text.size(); ++position) {
    if (text[position] == '"') return result;
    if (text[position] == '\\' && ++position == text.size()) break;
    result += text[position];
  }
  return std::nullopt;
}

// The last line counts, as in the shell, whose form the file has.
std::optional<std::string> lastValue(std::string_view userDirectories,
                                     std::string_view assignment) {
  std::optional<std::string> value;
  std::istringstream lines{std::string(userDirectories)};
  for (std::string line; std::getline(lines, line);) {
    line.erase(0, line.find_first_not_of(" \t"));
    if (!line.starts_with(assignment)) continue;
    if (auto text = quoted(std::string_view(line).substr(assignment.size()))) value = text;
  }
  return value;
}

}  // namespace

fs::path homeDirectory() {
  const char* home = std::getenv("HOME");
  if (home && home[0] == '/') return home;
  const passwd* user = getpwuid(getuid());
  return user && user->pw_dir ? user->pw_dir : "/";
}

fs::path configurationDirectory() {
  return directoryOfVariable("XDG_CONFIG_HOME", homeDirectory() / ".config") / "kestro";
}

fs::path defaultDataDirectory() {
  return directoryOfVariable("XDG_DATA_HOME", homeDirectory() / ".local/share") / "kestro";
}

fs::path documentsDirectory() {
  const fs::path home = homeDirectory();
  const auto text =
      readWholeFile(directoryOfVariable("XDG_CONFIG_HOME", home / ".config") / "user-dirs.dirs");
  const auto configured = text ? documentsDirectoryIn(*text, home) : std::nullopt;
  return configured.value_or(home / "Documents");
}

std::optional<fs::path> documentsDirectoryIn(std::string_view userDirectories,
                                             const fs::path& home) {
  constexpr std::string_view homeVariable = "$HOME";
  const auto value = lastValue(userDirectories, "XDG_DOCUMENTS_DIR=");
  if (!value) return std::nullopt;
  if (value->starts_with('/')) return *value;
  if (*value == homeVariable) return home;
  if (!value->starts_with("$HOME/")) return std::nullopt;
  return home / value->substr(homeVariable.size() + 1);
}

std::vector<fs::path> applicationDirectories() {
  std::vector<fs::path> directories;
  directories.push_back(directoryOfVariable("XDG_DATA_HOME", homeDirectory() / ".local/share") /
                        "applications");
  const char* variable = std::getenv("XDG_DATA_DIRS");
  std::istringstream list(variable && *variable ? variable : "/usr/local/share:/usr/share");
  for (std::string entry; std::getline(list, entry, ':');) {
    if (entry.starts_with('/')) directories.push_back(fs::path(entry) / "applications");
  }
  return directories;
}

bool makePrivateDirectory(const fs::path& directory) {
  try {
    makePrivateFolder(directory);
    return closeFolder(directory);
  } catch (const fs::filesystem_error&) {
    return false;
  }
}

}  // namespace kestro
