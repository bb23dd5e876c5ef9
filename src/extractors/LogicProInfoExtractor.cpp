#include "extractors/LogicProInfoExtractor.h"

#include <algorithm>

#include "extractors/AccessibilityElement.h"
#include "foundation/ComparableText.h"

namespace kestro {
namespace {

AccessibilityElements withRole(std::string_view wanted, const AccessibilityElements& children,
                               const std::vector<std::optional<std::string>>& roles) {
  AccessibilityElements matching;
  for (std::size_t index = 0; index < children.size(); ++index) {
    if (roles[index] == wanted) matching.push_back(children[index]);
  }
  return matching;
}

std::vector<std::string> valuesOf(const AccessibilityElements& texts) {
  std::vector<std::string> values;
  for (const AccessibilityElement& text : texts) {
    if (auto value = text.nonEmptyString(attribute::value)) values.push_back(std::move(*value));
  }
  return values;
}

bool hasUntitledValue(const AccessibilityElement& popUpButton) {
  return !popUpButton.nonEmptyString(attribute::title) &&
         popUpButton.nonEmptyString(attribute::value);
}

std::optional<std::string> labelAmong(const std::vector<std::string>& texts,
                                      const std::string& title) {
  const auto label = std::ranges::find_if(texts, [&](const std::string& text) {
    return !isSameText(text, title) && text.ends_with(':');
  });
  return label == texts.end() ? std::nullopt : std::optional(*label);
}

std::optional<std::string> dialogTitle(const AccessibilityElement& window) {
  if (window.subrole() != subrole::dialog) return std::nullopt;
  if (window.stringAttribute(attribute::document)) return std::nullopt;
  const auto title = window.nonEmptyString(attribute::title);
  if (!title) return std::nullopt;

  const auto children = window.children();
  std::vector<std::optional<std::string>> roles;
  for (const AccessibilityElement& child : children)
    roles.push_back(child.role());
  const auto texts = valuesOf(withRole(role::staticText, children, roles));
  const auto isTitle = [&](const std::string& text) { return isSameText(text, *title); };
  if (std::ranges::none_of(texts, isTitle)) return std::nullopt;
  const auto label = labelAmong(texts, *title);
  if (!label) return std::nullopt;

  const auto popUpButtons = withRole(role::popUpButton, children, roles);
  const bool keepsTitle = std::ranges::any_of(popUpButtons, hasUntitledValue);
  return (keepsTitle ? *title : titleBeforeLastColon(*title)) + " — " + *label;
}

}  // namespace

std::string titleBeforeLastColon(const std::string& title) {
  return title.substr(0, title.rfind(": "));
}

void LogicProInfoExtractor::writeDetailsForActivity(Activity& activity) {
  for (const AccessibilityElement& window : accessibilityWindows(process_, activity)) {
    auto title = dialogTitle(window);
    if (!title) continue;
    activity.details.documentTitle = std::move(title);
    return;
  }
}

}  // namespace kestro
