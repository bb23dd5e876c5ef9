// Which system this is, for people.
#pragma once

#include <string>

namespace kestro {

// The name and version that /etc/os-release gives, "Linux" without one.
std::string operatingSystemVersion();

}  // namespace kestro
