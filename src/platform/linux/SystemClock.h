// The machine's own wall clock.
#pragma once

#include "platform/Clock.h"

namespace kestro {

class SystemClock final : public Clock {
 public:
  Date now() const override { return std::chrono::system_clock::now(); }
};

}  // namespace kestro
