// Files of the desktop: those that say something about applications, and copies that diagnostics
// make for the user. The product's own files are its libraries' matter. Main thread only.
#pragma once

#include <optional>
#include <string>

#include "foundation/PropertyList.h"

namespace kestro {

class Files {
 public:
  virtual ~Files() = default;

  // The contents of a property list or of a table of texts (a .strings file), as they are now.
  // Absent when there is no such file or it holds no dictionary.
  virtual std::optional<PropertyListDictionary> dictionary(const std::string& path) = 0;

  // Whether there is a file or a directory.
  virtual bool exists(const std::string& path) = 0;
  // Copies one file, never over another. Why it could not; absent when it is done.
  virtual std::optional<std::string> copy(const std::string& from, const std::string& to) = 0;
  // Makes the directory with what is missing above it; one that exists is as good. Why it could
  // not; absent when it is there.
  virtual std::optional<std::string> makeDirectories(const std::string& path) = 0;
  // Where the user keeps documents, a whole path; it need not exist. Absent when the platform names
  // no such folder.
  virtual std::optional<std::string> documentsDirectory() = 0;
};

}  // namespace kestro
