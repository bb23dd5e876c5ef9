#include "foundation/Iso8601.h"

#include <fmt/format.h>

#include <chrono>

namespace kestro {
namespace {

using std::chrono::nanoseconds;

std::string fractionText(nanoseconds fraction) {
  if (fraction.count() == 0) return "";
  std::string text = fmt::format(".{:09}", fraction.count());
  text.erase(text.find_last_not_of('0') + 1);
  return text;
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

// Takes fixed-width fields off the front of a text.
class FieldReader {
 public:
  explicit FieldReader(std::string_view text) : rest_(text) {}

  std::optional<int> digits(std::size_t count) {
    if (rest_.size() < count) return std::nullopt;
    int value = 0;
    for (const char digit : rest_.substr(0, count)) {
      if (!isDigit(digit)) return std::nullopt;
      value = value * 10 + (digit - '0');
    }
    rest_.remove_prefix(count);
    return value;
  }

  bool skip(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }

  // The digits behind a decimal point, zero when there is none.
  std::optional<nanoseconds> fraction() {
    if (!skip('.')) return nanoseconds(0);
    nanoseconds::rep value = 0;
    nanoseconds::rep unit = 1'000'000'000;
    while (!rest_.empty() && isDigit(rest_.front()) && unit > 1) {
      unit /= 10;
      value += (rest_.front() - '0') * unit;
      rest_.remove_prefix(1);
    }
    if (unit == 1'000'000'000) return std::nullopt;
    return nanoseconds(value);
  }

  std::optional<std::chrono::minutes> zone() {
    if (skip('Z')) return std::chrono::minutes(0);
    const bool isEast = skip('+');
    if (!isEast && !skip('-')) return std::nullopt;
    const auto hours = digits(2);
    if (!hours || *hours > 23 || !skip(':')) return std::nullopt;
    const auto minutes = digits(2);
    if (!minutes || *minutes > 59) return std::nullopt;
    const std::chrono::minutes offset(*hours * 60 + *minutes);
    return isEast ? offset : -offset;
  }

  bool isAtEnd() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

std::optional<std::chrono::sys_days> parseDay(FieldReader& reader) {
  constexpr int firstYear = 1970;
  constexpr int lastYear = 2200;
  const auto year = reader.digits(4);
  if (!year || *year < firstYear || *year > lastYear || !reader.skip('-')) return std::nullopt;
  const auto month = reader.digits(2);
  if (!month || !reader.skip('-')) return std::nullopt;
  const auto day = reader.digits(2);
  if (!day) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day)));
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days(date);
}

std::optional<std::chrono::seconds> parseTimeOfDay(FieldReader& reader) {
  const auto hour = reader.digits(2);
  if (!hour || *hour > 23 || !reader.skip(':')) return std::nullopt;
  const auto minute = reader.digits(2);
  if (!minute || *minute > 59 || !reader.skip(':')) return std::nullopt;
  const auto second = reader.digits(2);
  if (!second || *second > 59) return std::nullopt;
  return std::chrono::hours(*hour) + std::chrono::minutes(*minute) + std::chrono::seconds(*second);
}

}  // namespace

std::string iso8601(Date date) {
  const auto day = std::chrono::floor<std::chrono::days>(date);
  const std::chrono::year_month_day calendar(day);
  const std::chrono::hh_mm_ss<nanoseconds> time(date - day);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}{}Z", static_cast<int>(calendar.year()),
                     static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
                     time.hours().count(), time.minutes().count(), time.seconds().count(),
                     fractionText(time.subseconds()));
}

std::optional<Date> parseIso8601(std::string_view text) {
  FieldReader reader(text);
  const auto day = parseDay(reader);
  if (!day || !reader.skip('T')) return std::nullopt;
  const auto time = parseTimeOfDay(reader);
  if (!time) return std::nullopt;
  const auto fraction = reader.fraction();
  const auto zone = reader.zone();
  if (!fraction || !zone || !reader.isAtEnd()) return std::nullopt;
  return Date(*day) + *time + *fraction - *zone;
}

}  // namespace kestro
