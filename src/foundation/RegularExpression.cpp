#include "foundation/RegularExpression.h"

#include <unicode/regex.h>

#include <cstdint>
#include <stdexcept>

namespace kestro {
namespace {

// ICU counts its time limit in steps of about a millisecond. Titles match in microseconds; what
// takes longer backtracks without end.
constexpr std::int32_t timeLimit = 250;

icu::UnicodeString unicodeString(std::string_view text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

std::string utf8(const icu::UnicodeString& text) {
  std::string bytes;
  text.toUTF8String(bytes);
  return bytes;
}

std::optional<std::string> capture(const icu::RegexMatcher& matcher, std::int32_t group) {
  UErrorCode status = U_ZERO_ERROR;
  if (matcher.start(group, status) < 0 || U_FAILURE(status)) return std::nullopt;
  return utf8(matcher.group(group, status));
}

}  // namespace

// The matcher is kept beside the pattern, because making one costs more than most matches. It
// refers to its input, which therefore has to live as long.
struct RegularExpression::Compiled {
  icu::UnicodeString input;
  std::unique_ptr<icu::RegexMatcher> matcher;

  void setInput(std::string_view text) {
    input = unicodeString(text);
    matcher->reset(input);
  }
  // Searches from the input's start. False also when a limit ends the search.
  bool find() {
    UErrorCode status = U_ZERO_ERROR;
    return matcher->find(status) && U_SUCCESS(status);
  }
};

std::optional<RegularExpression> RegularExpression::compile(std::string_view pattern) {
  UErrorCode status = U_ZERO_ERROR;
  auto compiled = std::make_unique<Compiled>();
  compiled->matcher = std::make_unique<icu::RegexMatcher>(unicodeString(pattern), 0, status);
  if (U_FAILURE(status)) return std::nullopt;
  compiled->matcher->setTimeLimit(timeLimit, status);
  return RegularExpression(std::move(compiled));
}

RegularExpression::RegularExpression(std::string_view pattern) {
  auto expression = compile(pattern);
  if (!expression) throw std::invalid_argument("not a regular expression: " + std::string(pattern));
  compiled_ = std::move(expression->compiled_);
}

RegularExpression::RegularExpression(std::unique_ptr<Compiled> compiled)
    : compiled_(std::move(compiled)) {}
RegularExpression::~RegularExpression() = default;
RegularExpression::RegularExpression(RegularExpression&&) noexcept = default;
RegularExpression& RegularExpression::operator=(RegularExpression&&) noexcept = default;

std::optional<RegularExpression::Match> RegularExpression::firstMatch(std::string_view text) const {
  compiled_->setInput(text);
  if (!compiled_->find()) return std::nullopt;
  Match match;
  for (std::int32_t group = 0; group <= compiled_->matcher->groupCount(); ++group) {
    match.captures.push_back(capture(*compiled_->matcher, group));
  }
  return match;
}

bool RegularExpression::matches(std::string_view text) const {
  compiled_->setInput(text);
  return compiled_->find();
}

std::string RegularExpression::replacing(std::string_view text,
                                         std::string_view replacementTemplate) const {
  if (!matches(text)) return std::string(text);
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString replaced =
      compiled_->matcher->replaceAll(unicodeString(replacementTemplate), status);
  return U_FAILURE(status) ? std::string(text) : utf8(replaced);
}

}  // namespace kestro
