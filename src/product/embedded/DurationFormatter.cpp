#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "product/KestroDatabase.h"

namespace kestro {

std::string DurationFormatter::format(Seconds duration, Style) {
  constexpr std::int64_t minute = 60;
  constexpr std::int64_t hour = 60 * minute;
  // What a date can span, so that nothing overflows.
  constexpr double longest = 1e12;
  const double bounded = std::clamp(std::floor(duration.count()), 0.0, longest);
  const auto seconds = static_cast<std::int64_t>(bounded);
  if (seconds < minute) return fmt::format("{} s", seconds);
  const std::int64_t minutes = seconds % hour / minute;
  if (seconds < hour) return fmt::format("{} min", minutes);
  if (minutes == 0) return fmt::format("{} h", seconds / hour);
  return fmt::format("{} h {} min", seconds / hour, minutes);
}

}  // namespace kestro
