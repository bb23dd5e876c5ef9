// Wall-clock time. In a scene it is virtual, so nothing above the platform reads the machine's own
// clock.
#pragma once

#include <chrono>

namespace kestro {

using Date = std::chrono::system_clock::time_point;
using Seconds = std::chrono::duration<double>;

class Clock {
 public:
  virtual ~Clock() = default;
  virtual Date now() const = 0;
};

}  // namespace kestro
