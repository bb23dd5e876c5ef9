// Files of the live desktop. Main thread only.
#pragma once

#include "platform/Files.h"

namespace kestro {

class LinuxFiles final : public Files {
 public:
  // Files above 16 MB count as absent.
  std::optional<PropertyListDictionary> dictionary(const std::string& path) override;
};

}  // namespace kestro
