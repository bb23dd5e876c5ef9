// Files of the desktop that the helper reads for what they say about applications. The product's
// own files are its libraries' matter. Main thread only.
#pragma once

#include <optional>
#include <string>

#include "platform/PropertyList.h"

namespace kestro {

class Files {
 public:
  virtual ~Files() = default;

  // The contents of a property list or of a table of texts (a .strings file), as they are now.
  // Absent when there is no such file or it holds no dictionary.
  virtual std::optional<PropertyListDictionary> dictionary(const std::string& path) = 0;
};

}  // namespace kestro
