#include "accessibility/AttributeValueText.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cctype>
#include <cstdlib>

namespace kestro {
namespace {

// Reads a text against a pattern of literals and numbers the way the C library's scanf does: white
// space in a literal stands for any amount of it, and after the first thing that does not fit
// everything else keeps the value 0.
class PatternReader {
 public:
  explicit PatternReader(std::string_view text) : text_(text), rest_(text_.c_str()) {}

  double real(std::string_view literal) {
    return static_cast<double>(number<float>(
        literal, [](const char* begin, char** end) { return std::strtof(begin, end); }));
  }

  std::int64_t whole(std::string_view literal) {
    return number<std::int64_t>(literal, [](const char* begin, char** end) -> std::int64_t {
      return std::strtol(begin, end, 10);
    });
  }

 private:
  template <class Number, class Conversion>
  Number number(std::string_view literal, Conversion convert) {
    if (failed_ || !skip(literal)) return 0;
    char* end = nullptr;
    const Number value = convert(rest_, &end);
    failed_ = end == rest_;
    rest_ = end;
    return failed_ ? 0 : value;
  }

  bool skip(std::string_view literal) {
    for (const char expected : literal) {
      if (expected == ' ') {
        while (std::isspace(static_cast<unsigned char>(*rest_)))
          ++rest_;
      } else if (*rest_ == expected) {
        ++rest_;
      } else {
        failed_ = true;
        return false;
      }
    }
    return true;
  }

  std::string text_;
  const char* rest_;
  bool failed_ = false;
};

// The number at the beginning of a text, decimal only, after white space; 0 without one.
double leadingFloat(std::string_view text) {
  const auto start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return 0;
  const auto digits = text.find_first_not_of("0123456789.eE+-", start);
  const std::string number(text.substr(start, digits - start));
  return static_cast<double>(std::strtof(number.c_str(), nullptr));
}

std::string description(const Data& data) {
  std::string bytes;
  for (const std::uint8_t byte : data)
    bytes += fmt::format("{:02x}", byte);
  return fmt::format("{{length = {}, bytes = 0x{}}}", data.size(), bytes);
}

struct GenericDescription {
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(bool flag) const { return flag ? "1" : "0"; }
  std::string operator()(std::int64_t number) const { return fmt::format("{}", number); }
  std::string operator()(double number) const { return fmt::format("{}", number); }
  std::string operator()(const WebAddress& address) const { return address.absoluteString; }
  std::string operator()(Date date) const {
    return fmt::format("{:%Y-%m-%d %H:%M:%S +0000}",
                       fmt::gmtime(std::chrono::system_clock::to_time_t(date)));
  }
  std::string operator()(const Data& data) const { return description(data); }
  template <class Other>
  std::string operator()(const Other&) const {
    return {};
  }
};

}  // namespace

// The order of evaluation inside braces is left to right, which the readings depend on.
AttributeValue valueFromText(std::string_view text, const AttributeValue& current) {
  PatternReader reader(text);
  if (current.get<Point>()) return Point{reader.real("x="), reader.real(" y=")};
  if (current.get<Size>()) return Size{reader.real("w="), reader.real(" h=")};
  if (current.get<Rect>()) {
    return Rect{{reader.real("x="), reader.real(" y=")}, {reader.real(" w="), reader.real(" h=")}};
  }
  if (current.get<Range>()) return Range{reader.whole("pos="), reader.whole(" len=")};
  if (current.get<std::string>()) return text;
  return leadingFloat(text);
}

std::string genericDescription(const AttributeValue& value) {
  return std::visit(GenericDescription{}, value.variant());
}

}  // namespace kestro
