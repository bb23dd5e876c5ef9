// Regular expressions with the designed platform's semantics: ICU patterns with default options
// (case-sensitive, ^ and $ at the ends of the whole text, \s \d \w by Unicode properties). Texts
// are UTF-8; bytes that are not count as U+FFFD while matching. A match that would exhaust ICU's
// stack or its time limit counts as no match.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

class RegularExpression {
 public:
  // One match: capture 0 is the whole match, an absent capture took no part in it.
  struct Match {
    std::vector<std::optional<std::string>> captures;
  };

  // Absent when the pattern is not a valid expression.
  static std::optional<RegularExpression> compile(std::string_view pattern);
  // For patterns that are part of the program: an invalid one is a programming error.
  explicit RegularExpression(std::string_view pattern);
  ~RegularExpression();
  RegularExpression(RegularExpression&&) noexcept;
  RegularExpression& operator=(RegularExpression&&) noexcept;

  std::optional<Match> firstMatch(std::string_view text) const;
  bool matches(std::string_view text) const;
  // The text with every match replaced; $1 in the template is capture 1. A text without a match is
  // returned byte for byte.
  std::string replacing(std::string_view text, std::string_view replacementTemplate) const;

 private:
  struct Compiled;
  explicit RegularExpression(std::unique_ptr<Compiled> compiled);

  std::unique_ptr<Compiled> compiled_;
};

}  // namespace kestro
