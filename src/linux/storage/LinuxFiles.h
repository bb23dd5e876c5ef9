// Files of the live desktop. Main thread only.
#pragma once

#include "platform/Files.h"

namespace kestro {

class LinuxFiles final : public Files {
 public:
  // Files above 16 MB count as absent.
  std::optional<PropertyListDictionary> dictionary(const std::string& path) override;
  bool exists(const std::string& path) override;
  std::optional<std::string> copy(const std::string& from, const std::string& to) override;
  std::optional<std::string> makeDirectories(const std::string& path) override;
  std::optional<std::string> documentsDirectory() override;
};

}  // namespace kestro
