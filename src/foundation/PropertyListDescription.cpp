#include "foundation/PropertyListDescription.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

#include "foundation/DateDescription.h"

namespace kestro {
namespace {

bool needsNoQuotes(char character) {
  constexpr std::string_view marks = "._-/";
  return std::isalnum(static_cast<unsigned char>(character)) ||
         marks.find(character) != std::string_view::npos;
}

std::string quotedIfNeeded(const std::string& text) {
  if (!text.empty() && std::ranges::all_of(text, needsNoQuotes)) return text;
  std::string quoted = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') quoted += '\\';
    quoted += character;
  }
  return quoted + '"';
}

class Describer {
 public:
  explicit Describer(std::size_t level) : level_(level) {}

  std::string operator()(bool value) const { return value ? "1" : "0"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const {
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return quotedIfNeeded(std::string(text.data(), end));
  }
  std::string operator()(const std::string& value) const { return quotedIfNeeded(value); }
  std::string operator()(Date value) const { return '"' + dateDescription(value) + '"'; }
  std::string operator()(const Data& value) const {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text = "<";
    for (const std::uint8_t byte : value) {
      text += digits[byte >> 4U];
      text += digits[byte & 0xFU];
    }
    return text + '>';
  }
  std::string operator()(const PropertyListArray& list) const {
    std::string text = "(";
    for (const PropertyList& member : list) {
      text += (&member == &list.front() ? "\n" : ",\n") + indent(level_ + 1) + described(member);
    }
    return text + "\n" + indent(level_) + ")";
  }
  std::string operator()(const PropertyListDictionary& dictionary) const {
    std::string text = "{\n";
    for (const PropertyListMember& member : dictionary) {
      text +=
          indent(level_ + 1) + quotedIfNeeded(member.key) + " = " + described(member.value) + ";\n";
    }
    return text + indent(level_) + "}";
  }

 private:
  static std::string indent(std::size_t level) { return std::string(4 * level, ' '); }
  std::string described(const PropertyList& value) const {
    return std::visit(Describer(level_ + 1), value.variant());
  }

  std::size_t level_;
};

}  // namespace

std::string propertyListDescription(const PropertyList& value) {
  return std::visit(Describer(0), value.variant());
}

}  // namespace kestro
