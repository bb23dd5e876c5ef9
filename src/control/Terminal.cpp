#include "control/Terminal.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <ctime>

#include "foundation/Utf8.h"

namespace kestro {
namespace {

std::string formattedTime(const std::tm& time, const char* format) {
  std::string text(32, '\0');
  text.resize(std::strftime(text.data(), text.size(), format, &time));
  return text;
}

}  // namespace

bool mayHaveColour() {
  const char* noColour = std::getenv("NO_COLOR");
  return isatty(STDOUT_FILENO) == 1 && !(noColour && *noColour);
}

std::string emphasized(std::string_view text, Emphasis emphasis) {
  if (!mayHaveColour()) return std::string(text);
  const char* code = emphasis == Emphasis::good        ? "32"
                     : emphasis == Emphasis::attention ? "33"
                     : emphasis == Emphasis::faint     ? "2"
                                                       : "1";
  return fmt::format("\x1b[{}m{}\x1b[0m", code, text);
}

std::string clockDuration(double seconds) {
  const auto whole = std::llround(seconds);
  return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

std::string shortDuration(double seconds) {
  const auto minutes = static_cast<long long>(std::floor(seconds / 60));
  if (minutes < 1) return "under 1m";
  if (minutes < 60) return fmt::format("{}m", minutes);
  return fmt::format("{}h {}m", minutes / 60, minutes % 60);
}

std::string localTime(std::int64_t secondsSince1970) {
  const std::time_t shown = secondsSince1970;
  const std::time_t now = std::time(nullptr);
  std::tm shownParts{};
  std::tm nowParts{};
  localtime_r(&shown, &shownParts);
  localtime_r(&now, &nowParts);
  const bool isToday =
      shownParts.tm_yday == nowParts.tm_yday && shownParts.tm_year == nowParts.tm_year;
  return formattedTime(shownParts, isToday ? "%H:%M" : "%Y-%m-%d %H:%M");
}

std::string printable(std::string_view text) {
  return isValidUtf8(text) ? withoutControlCharacters(text)
                           : withoutControlCharacters(utf8FromLatin1(text));
}

}  // namespace kestro
