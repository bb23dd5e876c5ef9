#include "linux/shell/TrayText.h"

#include <string_view>

#include "foundation/UnicodeText.h"
#include "foundation/Utf8.h"

namespace kestro {
namespace {

constexpr double characterWidth = 7;
constexpr double wideCharacterWidth = 13;
constexpr std::int32_t firstWideCharacter = 0x1100;  // Hangul, then the scripts of East Asia
constexpr std::string_view ellipsis = "…";

double widthOf(std::string_view cluster) {
  const CodePoint first = firstCodePoint(cluster);
  return first.value >= firstWideCharacter && first.bytes != ellipsis &&
                 !(first.value >= 0x2000 && first.value < 0x2e80)
             ? wideCharacterWidth
             : characterWidth;
}

double totalWidth(const std::vector<std::string_view>& clusters) {
  double width = 0;
  for (const std::string_view cluster : clusters)
    width += widthOf(cluster);
  return width;
}

}  // namespace

std::string trayText(const std::string& text, std::optional<double> maxWidth) {
  std::string shown = withoutControlCharacters(text);
  if (!maxWidth || shown.empty()) return shown;
  std::vector<std::string_view> clusters = graphemeClusters(shown);
  double width = totalWidth(clusters);
  if (width <= *maxWidth) return shown;
  // From the middle outwards, until what is left has room beside the mark.
  std::size_t leftEnd = clusters.size() / 2;
  std::size_t rightBegin = leftEnd;
  while (width + characterWidth > *maxWidth && (leftEnd > 0 || rightBegin < clusters.size())) {
    const bool fromRight = clusters.size() - rightBegin >= leftEnd && rightBegin < clusters.size();
    width -= widthOf(fromRight ? clusters[rightBegin++] : clusters[--leftEnd]);
  }
  std::string cut;
  for (std::size_t index = 0; index < leftEnd; ++index)
    cut += clusters[index];
  cut += ellipsis;
  for (std::size_t index = rightBegin; index < clusters.size(); ++index)
    cut += clusters[index];
  return cut;
}

}  // namespace kestro
