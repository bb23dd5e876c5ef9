#include "foundation/ComparableText.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <vector>

#include "foundation/TextCase.h"

namespace kestro {
namespace {

// What most texts consist of: they are their own comparable form.
bool isPlain(std::string_view text) {
  constexpr unsigned char firstPrinted = 0x20;
  constexpr unsigned char lastPrinted = 0x7E;
  return std::ranges::all_of(text, [](unsigned char byte) {
    return (byte >= firstPrinted && byte <= lastPrinted) || byte == '\t' || byte == '\n';
  });
}

// Formatting characters that are drawn, such as the Arabic number sign, show something. So do bytes
// that are no character.
bool showsSomething(UChar32 character) {
  if (character < 0 || character == '\t' || character == '\n') return true;
  if (u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT)) return false;
  const auto category = u_charType(character);
  if (category == U_CONTROL_CHAR) return false;
  return category != U_FORMAT_CHAR ||
         u_hasBinaryProperty(character, UCHAR_PREPENDED_CONCATENATION_MARK);
}

// Calls `visit` with each character that shows something, where it starts and where it ends.
template <class Visit>
void visitVisible(std::string_view text, Visit&& visit) {
  for (std::size_t start = 0, end = 0; start < text.size(); start = end) {
    UChar32 character = 0;
    U8_NEXT(text.data(), end, text.size(), character);
    if (showsSomething(character)) visit(character, start, end);
  }
}

std::string composed(const std::string& text) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFCInstance(status);
  if (U_FAILURE(status)) return text;
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  normalizer->normalizeUTF8(0, {text.data(), static_cast<std::int32_t>(text.size())}, sink, nullptr,
                            status);
  return U_FAILURE(status) ? text : result;
}

// Where the text may be cut: before visible characters that do not combine with what precedes them.
std::vector<std::size_t> cuts(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFCInstance(status);
  std::vector<std::size_t> starts;
  if (U_FAILURE(status)) return starts;
  visitVisible(text, [&](UChar32 character, std::size_t start, std::size_t) {
    if (character < 0 || normalizer->hasBoundaryBefore(character)) starts.push_back(start);
  });
  return starts;
}

}  // namespace

std::string comparableText(std::string_view text) {
  if (isPlain(text)) return std::string(text);
  std::string visible;
  visible.reserve(text.size());
  visitVisible(text, [&](UChar32, std::size_t start, std::size_t end) {
    visible += text.substr(start, end - start);
  });
  return composed(visible);
}

std::string caselessText(std::string_view text) {
  return comparableText(lowercased(text));
}

bool isSameText(std::string_view left, std::string_view right) {
  return left == right || comparableText(left) == comparableText(right);
}

std::string removingSameSuffix(std::string_view text, std::string_view suffix) {
  const std::string wanted = comparableText(suffix);
  if (wanted.empty()) return std::string(text);
  const auto starts = cuts(text);
  for (auto start = starts.rbegin(); start != starts.rend(); ++start) {
    const std::string end = comparableText(text.substr(*start));
    if (end == wanted) return std::string(text.substr(0, *start));
    if (end.size() >= wanted.size()) break;
  }
  return std::string(text);
}

}  // namespace kestro
