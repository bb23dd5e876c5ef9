#include "linux/applications/LaunchCommand.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace kestro {
namespace {

bool isRunnable(const std::string& path) {
  return access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::vector<std::string> launchCommand(std::string_view exec) {
  std::vector<std::string> words;
  std::string word;
  bool isWord = false;
  bool isQuoted = false;
  for (std::size_t position = 0; position < exec.size(); ++position) {
    const char character = exec[position];
    const bool isLast = position + 1 == exec.size();
    if (character == '"') {
      isQuoted = !isQuoted;
      isWord = true;
    } else if (character == '\\' && isQuoted && !isLast) {
      word += exec[++position];
    } else if (character == '%' && !isLast) {
      if (exec[++position] == '%') word += '%';
      isWord = isWord || exec[position] == '%';
    } else if (character == ' ' && !isQuoted) {
      if (isWord) words.push_back(std::exchange(word, {}));
      isWord = false;
    } else {
      word += character;
      isWord = true;
    }
  }
  if (isQuoted) return {};
  if (isWord) words.push_back(word);
  return words;
}

std::optional<std::string> programInPath(const std::string& name) {
  if (name.find('/') != std::string::npos) {
    return isRunnable(name) ? std::optional(name) : std::nullopt;
  }
  const char* variable = std::getenv("PATH");
  std::string_view folders = variable ? variable : "/usr/bin:/bin";
  while (!folders.empty()) {
    const std::string_view folder = folders.substr(0, folders.find(':'));
    const std::string path = std::string(folder) + "/" + name;
    if (!folder.empty() && isRunnable(path)) return path;
    folders.remove_prefix(std::min(folders.size(), folder.size() + 1));
  }
  return std::nullopt;
}

}  // namespace kestro
