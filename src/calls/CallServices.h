// Call services that are known by the identifiers of their applications.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

class Process;

// Built in, and those of the preference RunningCallDetector_extraAppsForCallTracking, read once per
// process: texts of a bundle-identifier fragment, a colon and a service name.
class CallServices {
 public:
  explicit CallServices(Process& process);

  // The service of an application whose identifier contains one of the fragments; absent when none
  // does. Of several that do the first in alphabetical order wins.
  std::optional<std::string> serviceName(std::string_view bundleIdentifier) const;

 private:
  std::map<std::string, std::string, std::less<>> nameByFragment_;
};

}  // namespace kestro
