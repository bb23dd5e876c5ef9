#include "control/PauseDuration.h"

#include <charconv>
#include <cmath>

namespace kestro {
namespace {

constexpr std::uint64_t longestPause = 360'000'000;  // 100,000 hours

// The units must come from the largest to the smallest, each once.
std::optional<std::uint64_t> secondsOf(std::string_view text) {
  std::uint64_t seconds = 0;
  std::uint64_t smallest = UINT64_MAX;
  while (!text.empty()) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto length = static_cast<std::size_t>(end - text.data());
    if (error != std::errc{} || length == text.size() || number > longestPause) return {};
    const char letter = text[length];
    const std::uint64_t unit = letter == 'h' ? 3600 : letter == 'm' ? 60 : letter == 's' ? 1 : 0;
    if (unit == 0 || unit >= smallest) return {};
    smallest = unit;
    seconds += number * unit;
    text.remove_prefix(length + 1);
  }
  return seconds;
}

}  // namespace

std::optional<std::uint32_t> parsePauseDuration(std::string_view text, Date now,
                                                const TimeZone& timeZone) {
  if (text == "tomorrow") {
    const Seconds left = timeZone.midnight(now, 1) - now;
    return static_cast<std::uint32_t>(std::ceil(left.count()));
  }
  const auto seconds = secondsOf(text);
  if (!seconds || *seconds == 0 || *seconds > longestPause) return std::nullopt;
  return static_cast<std::uint32_t>(*seconds);
}

}  // namespace kestro
