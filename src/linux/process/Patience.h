// How long another process may be waited for: each request at most the messaging timeout, all of a
// sample no longer than until its deadline, and nobody once a signal asks the helper to end. Main
// thread only.
#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

#include "linux/process/TerminationSignals.h"

namespace kestro {

class Patience {
 public:
  using Clock = std::chrono::steady_clock;
  using Duration = std::chrono::microseconds;

  void setTimeout(Duration timeout) { timeout_ = timeout; }
  // Absent: no sample is under way.
  void setDeadline(std::optional<Clock::time_point> deadline) { deadline_ = deadline; }

  // For a request that is made now; zero: it must not be made.
  Duration forRequest() const {
    if (isTerminationPending()) return Duration::zero();
    if (!deadline_) return timeout_;
    const auto left = std::chrono::duration_cast<Duration>(*deadline_ - Clock::now());
    return std::clamp(left, Duration::zero(), timeout_);
  }
  bool isOver() const { return forRequest() == Duration::zero(); }

 private:
  Duration timeout_{std::chrono::seconds(2)};
  std::optional<Clock::time_point> deadline_;
};

}  // namespace kestro
