// Time. In a scene it is virtual, so nothing above the platform reads the machine's own clocks.
#pragma once

#include "foundation/Date.h"

namespace kestro {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual Date now() const = 0;  // wall-clock time
  // Since some moment in the past; nobody sets it back. For how long something took.
  virtual Seconds monotonicTime() const = 0;
};

}  // namespace kestro
