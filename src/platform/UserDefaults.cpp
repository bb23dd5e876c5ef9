#include "platform/UserDefaults.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>

namespace kestro {
namespace {

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, [](unsigned char a, unsigned char b) {
    return std::tolower(a) == std::tolower(b);
  });
}

std::optional<std::int64_t> wholeNumber(double number) {
  constexpr double limit = 9.2e18;
  if (!std::isfinite(number) || std::abs(number) > limit) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

// The number at the beginning, behind white space and a sign.
std::optional<double> numberOfText(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n"), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  const std::size_t first = text.find_first_not_of("-.");
  // "inf" and "nan" are words.
  if (first == std::string_view::npos || !std::isdigit(static_cast<unsigned char>(text[first]))) {
    return std::nullopt;
  }
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} ? std::optional(number) : std::nullopt;
}

std::optional<bool> booleanOfText(std::string_view text) {
  constexpr std::array trueTexts{"YES", "TRUE"};
  constexpr std::array falseTexts{"NO", "FALSE"};
  auto equalsText = [&](std::string_view other) { return equalsIgnoringCase(text, other); };
  if (std::ranges::any_of(trueTexts, equalsText)) return true;
  if (std::ranges::any_of(falseTexts, equalsText)) return false;
  const auto number = numberOfText(text);
  return number ? std::optional(*number != 0) : std::nullopt;
}

}  // namespace

std::optional<bool> UserDefaults::boolean(std::string_view key) const {
  const auto stored = value(key);
  if (!stored) return std::nullopt;
  if (const auto* flag = stored->get<bool>()) return *flag;
  if (const auto* whole = stored->get<std::int64_t>()) return *whole != 0;
  if (const auto* real = stored->get<double>()) return *real != 0;
  if (const auto* text = stored->get<std::string>()) return booleanOfText(*text);
  return std::nullopt;
}

std::optional<std::int64_t> UserDefaults::integer(std::string_view key) const {
  const auto stored = value(key);
  if (!stored) return std::nullopt;
  if (const auto* flag = stored->get<bool>()) return *flag ? 1 : 0;
  if (const auto* whole = stored->get<std::int64_t>()) return *whole;
  if (const auto* real = stored->get<double>()) return wholeNumber(*real);
  if (const auto* text = stored->get<std::string>()) {
    const auto given = numberOfText(*text);
    return given ? wholeNumber(*given) : std::nullopt;
  }
  return std::nullopt;
}

std::optional<double> UserDefaults::number(std::string_view key) const {
  const auto stored = value(key);
  if (!stored) return std::nullopt;
  if (const auto* whole = stored->get<std::int64_t>()) return static_cast<double>(*whole);
  if (const auto* real = stored->get<double>()) return *real;
  if (const auto* text = stored->get<std::string>()) return numberOfText(*text);
  return std::nullopt;
}

std::optional<std::string> UserDefaults::string(std::string_view key) const {
  const auto stored = value(key);
  if (!stored) return std::nullopt;
  const auto* text = stored->get<std::string>();
  return text ? std::optional(*text) : std::nullopt;
}

std::optional<std::vector<std::string>> UserDefaults::stringList(std::string_view key) const {
  const auto stored = value(key);
  if (!stored) return std::nullopt;
  const auto* members = stored->get<PropertyListArray>();
  if (!members) return std::nullopt;
  std::vector<std::string> texts;
  for (const PropertyList& member : *members) {
    const auto* text = member.get<std::string>();
    if (!text) return std::nullopt;
    texts.push_back(*text);
  }
  return texts;
}

}  // namespace kestro
