#include "foundation/TimeZone.h"

#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <string>

namespace kestro {

struct TimeZone::Rules {
  std::unique_ptr<icu::TimeZone> zone;
};

TimeZone::TimeZone(std::shared_ptr<const Rules> rules) : rules_(std::move(rules)) {}

TimeZone TimeZone::utc() {
  return TimeZone(std::make_shared<Rules>(
      Rules{std::unique_ptr<icu::TimeZone>(icu::TimeZone::getGMT()->clone())}));
}

TimeZone TimeZone::local() {
  std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
  if (!zone || *zone == icu::TimeZone::getUnknown()) return utc();
  return TimeZone(std::make_shared<Rules>(Rules{std::move(zone)}));
}

std::optional<TimeZone> TimeZone::named(std::string_view name) {
  constexpr std::size_t longestName = 64;
  // Names are ASCII; anything else is no zone, and not worth converting.
  const auto isAscii = [](unsigned char byte) { return byte > ' ' && byte < 0x7F; };
  if (name.empty() || name.size() > longestName || !std::ranges::all_of(name, isAscii)) {
    return std::nullopt;
  }
  const auto identifier = icu::UnicodeString::fromUTF8(std::string(name));
  std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(identifier));
  // ICU answers an unknown name with a zone of its own that behaves as GMT.
  if (!zone || *zone == icu::TimeZone::getUnknown()) return std::nullopt;
  return TimeZone(std::make_shared<Rules>(Rules{std::move(zone)}));
}

std::chrono::seconds TimeZone::offset(Date date) const {
  using Milliseconds = std::chrono::duration<double, std::milli>;
  std::int32_t rawOffset = 0;
  std::int32_t daylightOffset = 0;
  UErrorCode status = U_ZERO_ERROR;
  rules_->zone->getOffset(Milliseconds(date.time_since_epoch()).count(), /*local=*/false, rawOffset,
                          daylightOffset, status);
  if (U_FAILURE(status)) return std::chrono::seconds(0);
  return std::chrono::duration_cast<std::chrono::seconds>(
      std::chrono::milliseconds(rawOffset + daylightOffset));
}

Date TimeZone::midnight(Date date, int daysLater) const {
  const auto local =
      std::chrono::floor<std::chrono::days>(date + offset(date)) + std::chrono::days(daysLater);
  // The offset of that midnight may differ from the date's: clocks change in between.
  return local - offset(local - offset(date));
}

}  // namespace kestro
