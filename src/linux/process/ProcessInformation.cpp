#include "linux/process/ProcessInformation.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <fstream>
#include <string_view>

namespace kestro {

std::optional<std::string> executablePath(ProcessIdentifier process) {
  const std::string link = "/proc/" + std::to_string(process) + "/exe";
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlink(link.c_str(), target.data(), target.size());
  if (length <= 0) return std::nullopt;
  std::string path(target.data(), static_cast<std::size_t>(length));
  constexpr std::string_view replaced = " (deleted)";
  if (path.ends_with(replaced)) path.resize(path.size() - replaced.size());
  return path;
}

bool isStopped(ProcessIdentifier process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string line;
  std::getline(file, line);
  // The name before the state may itself hold blanks and parentheses.
  const std::size_t end = line.rfind(") ");
  if (end == std::string::npos || end + 2 >= line.size()) return false;
  const char state = line[end + 2];
  return state == 'T' || state == 't';
}

}  // namespace kestro
