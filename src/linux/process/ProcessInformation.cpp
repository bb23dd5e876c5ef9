#include "linux/process/ProcessInformation.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

// Of /proc/PID/stat, from the state on; empty when the process is gone.
std::string fieldsAfterName(ProcessIdentifier process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string line;
  std::getline(file, line);
  // The name before the state may itself hold blanks and parentheses.
  const std::size_t end = line.rfind(") ");
  return end == std::string::npos ? "" : line.substr(end + 2);
}

// The innermost identifier of a process that is in a namespace of its own; 0 of the others.
ProcessIdentifier identifierInNamespace(ProcessIdentifier process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with("NSpid:")) continue;
    std::istringstream numbers(line.substr(6));
    std::vector<ProcessIdentifier> identifiers;
    for (ProcessIdentifier number = 0; numbers >> number;)
      identifiers.push_back(number);
    return identifiers.size() > 1 ? identifiers.back() : 0;
  }
  return 0;
}

}  // namespace

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

std::optional<std::string> processName(ProcessIdentifier process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/comm");
  std::string name;
  if (!std::getline(file, name)) return std::nullopt;
  return name;
}

std::optional<ProcessIdentifier> parentProcess(ProcessIdentifier process) {
  const std::string fields = fieldsAfterName(process);
  // "S 1234 …"
  const long parent = fields.size() > 2 ? std::strtol(fields.c_str() + 2, nullptr, 10) : 0;
  if (parent <= 0) return std::nullopt;
  return static_cast<ProcessIdentifier>(parent);
}

std::optional<ProcessIdentifier> processInNamespace(ProcessIdentifier inside,
                                                    const std::string& name) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
    const std::string number = entry.path().filename();
    const auto process = static_cast<ProcessIdentifier>(std::strtol(number.c_str(), nullptr, 10));
    if (process <= 0 || identifierInNamespace(process) != inside) continue;
    const bool hasName = name.empty() || processName(process) == name;
    if (hasName && executablePath(process)) return process;
  }
  return std::nullopt;
}

bool isStopped(ProcessIdentifier process) {
  const std::string fields = fieldsAfterName(process);
  return fields.starts_with('T') || fields.starts_with('t');
}

}  // namespace kestro
