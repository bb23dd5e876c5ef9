// The virtual time of a scripted desktop. It stands still unless it is advanced; at a pace of N it
// waits so long that N virtual seconds take a real one. Main thread only.
#pragma once

#include <chrono>
#include <optional>

#include "platform/Clock.h"

namespace kestro {

class SceneClock final : public Clock {
 public:
  // Without a pace, time passes as fast as it is advanced.
  SceneClock(Date start, std::optional<double> pace);

  Date now() const override { return now_; }
  Seconds monotonicTime() const override { return now_ - start_; }

  // A moment that has passed changes nothing.
  void advanceTo(Date date);
  void advanceBy(Seconds duration);

 private:
  Date start_;
  Date now_;
  std::optional<double> pace_;
  std::chrono::steady_clock::time_point realStart_;
};

}  // namespace kestro
