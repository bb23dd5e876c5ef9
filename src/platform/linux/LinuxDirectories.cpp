#include "platform/linux/LinuxDirectories.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <string>

namespace kestro {
namespace {

namespace fs = std::filesystem;

// The XDG base directory rules want relative paths in these variables to be ignored.
fs::path directoryOfVariable(const char* variable, const fs::path& otherwise) {
  const char* value = std::getenv(variable);
  if (!value || value[0] != '/') return otherwise;
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
  std::error_code error;
  if (fs::is_directory(directory, error)) return true;
  fs::create_directories(directory, error);
  if (error) return false;
  fs::permissions(directory, fs::perms::owner_all, error);
  return !error;
}

}  // namespace kestro
