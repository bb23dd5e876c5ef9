#include <unicode/uchar.h>

#include <algorithm>
#include <span>

#include "foundation/UnicodeText.h"
#include "product/KestroDatabase.h"
#include "product/KestroLegacy.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr std::string_view ellipsis = "…";
constexpr std::int32_t zeroWidthJoiner = 0x200D;
constexpr std::int32_t textPresentationSelector = 0xFE0E;
constexpr std::int32_t emojiPresentationSelector = 0xFE0F;
constexpr std::int32_t enclosingKeycap = 0x20E3;
constexpr std::int32_t firstTag = 0xE0020;
constexpr std::int32_t lastTag = 0xE007F;

bool has(const CodePoint& point, UProperty property) {
  return point.value >= 0 && u_hasBinaryProperty(point.value, property);
}

bool isPictograph(const CodePoint& point) {
  return has(point, UCHAR_EXTENDED_PICTOGRAPHIC);
}

bool isTag(const CodePoint& point) {
  return point.value >= firstTag && point.value <= lastTag;
}

// The parts of an emoji between its pictographs.
bool isEmojiExtension(const CodePoint& point) {
  return point.value == emojiPresentationSelector || has(point, UCHAR_EMOJI_MODIFIER) ||
         isTag(point);
}

bool followsPictograph(std::span<const CodePoint> points, std::size_t index) {
  while (index > 0 && isEmojiExtension(points[index - 1]))
    --index;
  return index > 0 && isPictograph(points[index - 1]);
}

// Whether the formatting character holds an emoji together: a joiner between two pictographs, or a
// tag of a flag of a country's part.
bool isPartOfEmoji(std::span<const CodePoint> points, std::size_t index) {
  if (isTag(points[index])) return followsPictograph(points, index);
  return points[index].value == zeroWidthJoiner && index + 1 < points.size() &&
         isPictograph(points[index + 1]) && followsPictograph(points, index);
}

// Formatting characters that are drawn, such as the Arabic number sign, are none of these.
bool isInvisibleControlCharacter(const CodePoint& point) {
  if (point.value < 0 || point.value == '\t' || point.value == '\n') return false;
  const auto category = u_charType(point.value);
  if (category == U_CONTROL_CHAR) return true;
  return category == U_FORMAT_CHAR && !has(point, UCHAR_PREPENDED_CONCATENATION_MARK);
}

// Whether a cluster's first character is shown as an emoji. Characters that are text by default (a
// digit, the copyright sign) become one only through what follows them.
bool isEmojiCluster(std::span<const CodePoint> cluster) {
  const CodePoint& first = cluster.front();
  if (!has(first, UCHAR_EMOJI)) return false;
  if (cluster.size() == 1) return has(first, UCHAR_EMOJI_PRESENTATION);
  const CodePoint& second = cluster[1];
  if (second.value == textPresentationSelector) return false;
  return has(first, UCHAR_EMOJI_PRESENTATION) || second.value == emojiPresentationSelector ||
         second.value == enclosingKeycap || second.value == zeroWidthJoiner ||
         has(second, UCHAR_EMOJI_MODIFIER);
}

bool isEmojiOrWhiteSpace(std::string_view cluster) {
  const auto points = codePoints(cluster);
  return isWhiteSpace(points.front()) || isEmojiCluster(points);
}

std::string joined(std::span<const std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) {
    text += part;
  }
  return text;
}

// How many of the kept characters stand before the ellipsis.
std::size_t keptAtStart(std::size_t kept, TruncationPosition position) {
  switch (position) {
    case TruncationPosition::start:
      return 0;
    case TruncationPosition::middle:
      return (kept + 1) / 2;
    case TruncationPosition::end:
      return kept;
  }
  return kept;
}

}  // namespace

std::string removingInvisibleControlCharacters(std::string_view text) {
  const auto points = codePoints(text);
  std::string visible;
  visible.reserve(text.size());
  for (std::size_t index = 0; index < points.size(); ++index) {
    if (isInvisibleControlCharacter(points[index]) && !isPartOfEmoji(points, index)) continue;
    visible += points[index].bytes;
  }
  return visible;
}

std::string removingTrailingEmojiAndWhitespace(std::string_view text) {
  const auto clusters = graphemeClusters(text);
  for (auto cluster = clusters.rbegin(); cluster != clusters.rend(); ++cluster) {
    if (!isEmojiOrWhiteSpace(*cluster)) break;
    text.remove_suffix(cluster->size());
  }
  return std::string(text);
}

std::string truncated(std::string_view text, std::size_t length, TruncationPosition position) {
  if (text.size() <= length) return std::string(text);
  const auto clusters = graphemeClusters(text);
  if (clusters.size() <= length) return std::string(text);
  if (length == 0) return {};
  const std::span<const std::string_view> all(clusters);
  const std::size_t kept = length - 1;
  const std::size_t atStart = keptAtStart(kept, position);
  return joined(all.first(atStart)) + std::string(ellipsis) + joined(all.last(kept - atStart));
}

std::string removingPrefixIfPresent(std::string_view text, std::string_view prefix) {
  if (text.starts_with(prefix)) text.remove_prefix(prefix.size());
  return std::string(text);
}

std::string removingSuffixIfPresent(std::string_view text, std::string_view suffix) {
  if (text.ends_with(suffix)) text.remove_suffix(suffix.size());
  return std::string(text);
}

std::optional<RegularExpression::Match> firstMatch(std::string_view text,
                                                   const RegularExpression& expression) {
  return expression.firstMatch(text);
}

bool matches(std::string_view text, const RegularExpression& expression) {
  return expression.matches(text);
}

std::string replacing(std::string_view text, const RegularExpression& expression,
                      std::string_view replacementTemplate) {
  return expression.replacing(text, replacementTemplate);
}

}  // namespace kestro
