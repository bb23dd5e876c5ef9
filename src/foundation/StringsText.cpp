#include "foundation/StringsText.h"

#include <string>

namespace kestro {
namespace {

char unescaped(char character) {
  if (character == 'n') return '\n';
  if (character == 't') return '\t';
  if (character == 'r') return '\r';
  return character;
}

// Reads from the front of what is left of the text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  // False when a comment does not end.
  bool skipSpaceAndComments() {
    while (true) {
      const auto start = rest_.find_first_not_of(" \t\r\n");
      rest_.remove_prefix(start == std::string_view::npos ? rest_.size() : start);
      if (rest_.starts_with("//")) {
        skipThrough("\n");
      } else if (!rest_.starts_with("/*")) {
        return true;
      } else if (!skipThrough("*/")) {
        return false;
      }
    }
  }

  bool isAtEnd() const { return rest_.empty(); }

  bool take(char wanted) {
    if (!skipSpaceAndComments() || !rest_.starts_with(wanted)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::optional<std::string> quoted() {
    if (!take('"')) return std::nullopt;
    std::string text;
    while (!rest_.empty() && rest_.front() != '"') {
      if (rest_.front() == '\\' && rest_.size() > 1) {
        text += unescaped(rest_[1]);
        rest_.remove_prefix(2);
      } else {
        text += rest_.front();
        rest_.remove_prefix(1);
      }
    }
    if (!take('"')) return std::nullopt;
    return text;
  }

 private:
  // A last line without an end is skipped whole.
  bool skipThrough(std::string_view end) {
    const auto found = rest_.find(end, 2);
    rest_.remove_prefix(found == std::string_view::npos ? rest_.size() : found + end.size());
    return found != std::string_view::npos;
  }

  std::string_view rest_;
};

}  // namespace

std::optional<PropertyListDictionary> dictionaryFromStringsText(std::string_view text) {
  Scanner scanner(text);
  PropertyListDictionary table;
  while (true) {
    if (!scanner.skipSpaceAndComments()) return std::nullopt;
    if (scanner.isAtEnd()) return table;
    auto key = scanner.quoted();
    if (!key || !scanner.take('=')) return std::nullopt;
    auto value = scanner.quoted();
    if (!value || !scanner.take(';')) return std::nullopt;
    table.set(*std::move(key), *std::move(value));
  }
}

}  // namespace kestro
