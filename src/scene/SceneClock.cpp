#include "scene/SceneClock.h"

#include <thread>

namespace kestro {

SceneClock::SceneClock(Date start, std::optional<double> pace)
    : start_(start), now_(start), pace_(pace), realStart_(std::chrono::steady_clock::now()) {}

void SceneClock::advanceTo(Date date) {
  if (date <= now_) return;
  now_ = date;
  if (!pace_) return;
  const Seconds realTime = Seconds(now_ - start_) / *pace_;
  std::this_thread::sleep_until(
      realStart_ + std::chrono::duration_cast<std::chrono::steady_clock::duration>(realTime));
}

void SceneClock::advanceBy(Seconds duration) {
  advanceTo(now_ + std::chrono::duration_cast<Date::duration>(duration));
}

}  // namespace kestro
