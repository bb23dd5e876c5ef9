// The machine's own clocks.
#pragma once

#include "platform/Clock.h"

namespace kestro {

class SystemClock final : public Clock {
 public:
  Date now() const override { return std::chrono::system_clock::now(); }
  Seconds monotonicTime() const override {
    return std::chrono::steady_clock::now().time_since_epoch();
  }
};

}  // namespace kestro
