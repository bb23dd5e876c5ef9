#include "foundation/UnicodeText.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <memory>

namespace kestro {
namespace {

CodePoint codePointAt(std::string_view text, std::size_t offset) {
  std::size_t end = offset;
  UChar32 value = 0;
  U8_NEXT(text.data(), end, text.size(), value);
  return {value, text.substr(offset, end - offset)};
}

}  // namespace

std::vector<CodePoint> codePoints(std::string_view text) {
  std::vector<CodePoint> points;
  for (std::size_t offset = 0; offset < text.size(); offset += points.back().bytes.size()) {
    points.push_back(codePointAt(text, offset));
  }
  return points;
}

CodePoint firstCodePoint(std::string_view text) {
  return codePointAt(text, 0);
}

// Ill-formed bytes are taken one by one.
CodePoint lastCodePoint(std::string_view text) {
  constexpr std::size_t longestSequence = 4;
  for (std::size_t length = longestSequence; length > 1; --length) {
    if (length > text.size()) continue;
    const CodePoint point = codePointAt(text, text.size() - length);
    if (point.value >= 0 && point.bytes.size() == length) return point;
  }
  return codePointAt(text, text.size() - 1);
}

std::vector<std::string_view> graphemeClusters(std::string_view text) {
  std::vector<std::string_view> clusters;
  UErrorCode status = U_ZERO_ERROR;
  UText utf8Text = UTEXT_INITIALIZER;
  utext_openUTF8(&utf8Text, text.data(), static_cast<std::int64_t>(text.size()), &status);
  const std::unique_ptr<icu::BreakIterator> iterator(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  if (U_SUCCESS(status)) iterator->setText(&utf8Text, status);
  if (U_SUCCESS(status)) {
    for (auto start = iterator->first(), end = iterator->next(); end != icu::BreakIterator::DONE;
         start = end, end = iterator->next()) {
      clusters.push_back(
          text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
    }
  }
  utext_close(&utf8Text);
  return clusters;
}

bool isWhiteSpace(const CodePoint& codePoint) {
  return codePoint.value >= 0 && u_isUWhiteSpace(codePoint.value);
}

std::string_view trimmingWhiteSpace(std::string_view text) {
  while (!text.empty()) {
    const CodePoint first = firstCodePoint(text);
    if (!isWhiteSpace(first)) break;
    text.remove_prefix(first.bytes.size());
  }
  while (!text.empty()) {
    const CodePoint last = lastCodePoint(text);
    if (!isWhiteSpace(last)) break;
    text.remove_suffix(last.bytes.size());
  }
  return text;
}

}  // namespace kestro
