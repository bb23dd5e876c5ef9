#include "linux/process/OperatingSystemVersion.h"

#include <fstream>

namespace kestro {

std::string operatingSystemVersion() {
  constexpr std::string_view key = "PRETTY_NAME=";
  std::ifstream file("/etc/os-release");
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(key)) continue;
    std::string name = line.substr(key.size());
    if (name.size() > 1 && name.front() == '"' && name.back() == '"') {
      name = name.substr(1, name.size() - 2);
    }
    return name;
  }
  return "Linux";
}

}  // namespace kestro
