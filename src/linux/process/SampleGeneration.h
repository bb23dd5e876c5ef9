// Tells which reads belong to one sample. Facts read from other processes are kept for one
// generation and no longer: a new one begins with every task of the run loop, with every question
// for the frontmost application, and when the current one has become old. Main thread only.
#pragma once

#include <chrono>
#include <cstdint>

namespace kestro {

class SampleGeneration {
 public:
  // Generation 0 never occurs, so that it can stand for "not read yet".
  std::uint64_t current() {
    if (SteadyClock::now() - begun_ > longestGeneration) advance();
    return generation_;
  }
  void advance() {
    ++generation_;
    begun_ = SteadyClock::now();
  }

 private:
  using SteadyClock = std::chrono::steady_clock;
  // Below the shortest sampling interval, above what a sample usually takes.
  static constexpr std::chrono::milliseconds longestGeneration{500};

  std::uint64_t generation_ = 1;
  SteadyClock::time_point begun_ = SteadyClock::now();
};

}  // namespace kestro
