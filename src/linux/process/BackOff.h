// When something that failed may be tried again: at once the first time, then after delays that
// double from `first` to `longest`, until a try succeeds. A plain value type.
#pragma once

#include <algorithm>
#include <chrono>

namespace kestro {

class BackOff {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  BackOff(std::chrono::milliseconds first, std::chrono::milliseconds longest)
      : first_(first), longest_(longest) {}

  bool isDue(TimePoint now) const { return now >= nextTry_; }
  bool hasFailed() const { return delay_.count() > 0; }
  std::chrono::milliseconds delay() const { return delay_; }

  void noteFailure(TimePoint now) {
    delay_ = hasFailed() ? std::min(delay_ * 2, longest_) : first_;
    nextTry_ = now + delay_;
  }
  void noteSuccess() {
    delay_ = std::chrono::milliseconds(0);
    nextTry_ = TimePoint::min();
  }

 private:
  std::chrono::milliseconds first_;
  std::chrono::milliseconds longest_;
  std::chrono::milliseconds delay_{0};
  TimePoint nextTry_ = TimePoint::min();
};

}  // namespace kestro
