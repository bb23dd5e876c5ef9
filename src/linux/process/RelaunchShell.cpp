#include "linux/process/RelaunchShell.h"

#include <filesystem>

namespace kestro {

std::string relaunchShell(const std::string& systemShell) {
  std::error_code error;
  const auto resolved = std::filesystem::canonical(systemShell, error);
  return !error && resolved.filename() == "bash" ? systemShell : "/bin/bash";
}

}  // namespace kestro
