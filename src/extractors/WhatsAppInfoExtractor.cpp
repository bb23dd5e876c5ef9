#include "extractors/WhatsAppInfoExtractor.h"

#include "extractors/ContextPath.h"
#include "extractors/EnhancedAccessibility.h"
#include "product/KestroDatabase.h"

namespace kestro {
namespace {

std::optional<AccessibilityElement> toolbarHeading(const AccessibilityElement& window) {
  auto element = firstWithRole(role::toolbar, window.children());
  if (element) element = firstWithRole(role::group, element->children());
  if (element) element = firstWithRole(role::group, element->children());
  if (element) element = lastWithRole(role::group, element->children());
  if (element) element = firstWithRole(role::group, element->children());
  if (!element) return std::nullopt;
  return element->firstDescendantWithRole(role::heading, maxRecursionLevel(window.process()));
}

std::optional<AccessibilityElement> headerButton(const AccessibilityElement& window) {
  return window.firstDescendantWith({{attribute::identifier, "NavigationBar_HeaderViewButton"}},
                                    maxRecursionLevel(window.process()));
}

std::optional<std::string> nameOf(const std::optional<AccessibilityElement>& element) {
  const auto text = element ? element->nonEmptyString(attribute::description) : std::nullopt;
  if (!text) return std::nullopt;
  std::string conversation = removingInvisibleControlCharacters(*text);
  return conversation.empty() ? std::nullopt : std::optional(std::move(conversation));
}

}  // namespace

void WhatsAppInfoExtractor::writeDetailsForActivity(Activity& activity) {
  enableEnhancedAccessibility(process_, activity);
  writeFirstContextPath(process_, activity, [](const AccessibilityElement& window) {
    auto conversation = nameOf(toolbarHeading(window));
    if (!conversation) conversation = nameOf(headerButton(window));
    return conversation ? ContextPath{*conversation} : ContextPath();
  });
}

}  // namespace kestro
