// Moments of the wall clock, and spans of time.
#pragma once

#include <chrono>

namespace kestro {

using Date = std::chrono::system_clock::time_point;
using Seconds = std::chrono::duration<double>;

}  // namespace kestro
