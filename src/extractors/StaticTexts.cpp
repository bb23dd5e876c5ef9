#include "extractors/StaticTexts.h"

#include <algorithm>

#include "foundation/TextCase.h"

namespace kestro {

namespace {

std::vector<std::string> allStaticTexts(const AccessibilityElement& element,
                                        std::int64_t maxDepth) {
  const auto elements =
      element.descendantsWith({{attribute::role, std::string(role::staticText)}}, maxDepth);
  std::vector<std::string> texts;
  for (const AccessibilityElement& text : elements) {
    auto value = text.nonEmptyString(attribute::value);
    if (value) texts.push_back(std::move(*value));
  }
  return texts;
}

bool isDecoration(const std::string& text) {
  return !hasLetterOrDigit(text);
}

}  // namespace

std::vector<std::string> staticTexts(const AccessibilityElement& element, std::int64_t maxDepth) {
  auto texts = allStaticTexts(element, maxDepth);
  std::erase_if(texts, isDecoration);
  return texts;
}

std::vector<std::string> staticTextsOrSigns(const AccessibilityElement& element,
                                            std::int64_t maxDepth) {
  auto texts = allStaticTexts(element, maxDepth);
  const bool areSigns = std::ranges::all_of(texts, isDecoration);
  std::erase_if(
      texts, [&](const std::string& text) { return areSigns ? isIcon(text) : isDecoration(text); });
  return texts;
}

std::optional<std::string> lineOf(const std::vector<std::string>& pieces) {
  std::string line;
  for (const std::string& piece : pieces) {
    const bool hasBlank = line.empty() || line.ends_with(' ') || piece.starts_with(' ');
    if (!hasBlank) line += ' ';
    line += piece;
  }
  const auto first = line.find_first_not_of(' ');
  if (first == std::string::npos) return std::nullopt;
  return line.substr(first, line.find_last_not_of(' ') - first + 1);
}

}  // namespace kestro
