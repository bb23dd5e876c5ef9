#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/LocalizedStrings.h"
#include "product/KestroDatabase.h"

namespace kestro {
namespace {

constexpr std::int64_t secondsInMinute = 60;
constexpr std::int64_t secondsInHour = 60 * secondsInMinute;

std::int64_t wholeSeconds(Seconds duration) {
  // What a date can span, so that nothing overflows.
  constexpr double longest = 1e12;
  if (std::isnan(duration.count())) return 0;
  return static_cast<std::int64_t>(std::clamp(std::floor(duration.count()), 0.0, longest));
}

}  // namespace

std::string DurationFormatter::format(Seconds duration, Style) {
  const std::int64_t seconds = wholeSeconds(duration);
  if (seconds < secondsInMinute) return fmt::format("{} s", seconds);
  const std::int64_t minutes = seconds % secondsInHour / secondsInMinute;
  if (seconds < secondsInHour) return fmt::format("{} min", minutes);
  if (minutes == 0) return fmt::format("{} h", seconds / secondsInHour);
  return fmt::format("{} h {} min", seconds / secondsInHour, minutes);
}

std::string DurationFormatterBridge::shortString(Process& process, Seconds duration,
                                                 int maxComponents, bool alwaysShowMinutes) {
  const std::int64_t whole = wholeSeconds(duration);
  const std::int64_t minutes = whole % secondsInHour / secondsInMinute;
  std::vector<std::string> components;
  const auto add = [&](std::string_view unit, std::int64_t number) {
    components.push_back(localizedFormat(process, unit, std::to_string(number)));
  };
  if (whole >= secondsInHour) add(localizable("%@h"), whole / secondsInHour);
  if (minutes > 0 || alwaysShowMinutes) add(localizable("%@m"), minutes);
  if (whole < secondsInMinute && !alwaysShowMinutes) add(localizable("%@s"), whole);
  components.resize(
      std::min(components.size(), static_cast<std::size_t>(std::max(1, maxComponents))));
  return fmt::format("{}", fmt::join(components, " "));
}

}  // namespace kestro
