#include <unicode/uchar.h>

#include <array>

#include "foundation/UnicodeText.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr std::array<std::string_view, 4> bracketPairs{"()", "[]", "{}", "<>"};

// Dashes of every length, bars, bullets and middle dots, the slash, and the marks of trails ("›").
bool isSeparator(const CodePoint& point) {
  constexpr std::u32string_view others = U"|¦•∙·‧⋅:/›»−";
  if (point.value < 0) return false;
  return u_charType(point.value) == U_DASH_PUNCTUATION ||
         others.find(static_cast<char32_t>(point.value)) != std::u32string_view::npos;
}

// An end of the text counts as white space: nothing follows a dangling separator.
bool startsWithWhiteSpace(std::string_view text) {
  return text.empty() || isWhiteSpace(firstCodePoint(text));
}

bool endsWithWhiteSpace(std::string_view text) {
  return text.empty() || isWhiteSpace(lastCodePoint(text));
}

// What follows the separator at the start of `text`, if there is one with white space around it. A
// colon stands close to the word before it.
std::optional<std::string_view> afterSeparator(std::string_view text) {
  const std::string_view trimmed = trimmingWhiteSpace(text);
  if (trimmed.empty()) return std::nullopt;
  const CodePoint separator = firstCodePoint(trimmed);
  if (!isSeparator(separator)) return std::nullopt;
  if (!startsWithWhiteSpace(text) && separator.value != ':') return std::nullopt;
  const std::string_view rest = trimmed.substr(separator.bytes.size());
  if (!startsWithWhiteSpace(rest)) return std::nullopt;
  return trimmingWhiteSpace(rest);
}

std::optional<std::string_view> beforeSeparator(std::string_view text) {
  const std::string_view trimmed = trimmingWhiteSpace(text);
  if (trimmed.empty() || !endsWithWhiteSpace(text)) return std::nullopt;
  const CodePoint separator = lastCodePoint(trimmed);
  if (!isSeparator(separator)) return std::nullopt;
  const std::string_view rest = trimmed.substr(0, trimmed.size() - separator.bytes.size());
  if (!endsWithWhiteSpace(rest) && separator.value != ':') return std::nullopt;
  return trimmingWhiteSpace(rest);
}

std::optional<std::string_view> withoutPrefix(std::string_view title, std::string_view word) {
  if (!title.starts_with(word)) return std::nullopt;
  return afterSeparator(title.substr(word.size()));
}

std::optional<std::string_view> withoutSuffix(std::string_view title, std::string_view word) {
  if (!title.ends_with(word)) return std::nullopt;
  return beforeSeparator(title.substr(0, title.size() - word.size()));
}

std::string bracketed(std::string_view word, std::string_view brackets) {
  return std::string(1, brackets.front()).append(word).append(1, brackets.back());
}

std::optional<std::string_view> withoutBracketedPrefix(std::string_view title,
                                                       std::string_view word) {
  if (!title.starts_with(word)) return std::nullopt;
  const std::string_view rest = title.substr(word.size());
  if (!startsWithWhiteSpace(rest)) return std::nullopt;
  return trimmingWhiteSpace(rest);
}

std::optional<std::string_view> withoutBracketedSuffix(std::string_view title,
                                                       std::string_view word) {
  if (!title.ends_with(word)) return std::nullopt;
  const std::string_view rest = title.substr(0, title.size() - word.size());
  if (!endsWithWhiteSpace(rest)) return std::nullopt;
  return trimmingWhiteSpace(rest);
}

// The title without the word, once at each end.
std::string_view withoutWordAtEnds(std::string_view title, std::string_view word) {
  title = withoutPrefix(title, word).value_or(title);
  title = withoutSuffix(title, word).value_or(title);
  for (const std::string_view brackets : bracketPairs) {
    const std::string form = bracketed(word, brackets);
    title = withoutBracketedPrefix(title, form).value_or(title);
    title = withoutBracketedSuffix(title, form).value_or(title);
  }
  return title;
}

}  // namespace

std::optional<std::string> removingTitlePrefixesAndSuffixes(std::string_view title,
                                                            std::string_view prefixOrSuffix,
                                                            bool alsoRemoveIfFullString) {
  const std::string_view whole = trimmingWhiteSpace(title);
  const std::string_view word = trimmingWhiteSpace(prefixOrSuffix);
  if (word.empty()) return std::string(whole);
  const std::string_view rest = withoutWordAtEnds(whole, word);
  if (!rest.empty() && rest != word) return std::string(rest);
  if (alsoRemoveIfFullString) return std::nullopt;
  return std::string(word);
}

}  // namespace kestro
