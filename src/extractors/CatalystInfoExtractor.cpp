#include "extractors/CatalystInfoExtractor.h"

#include "extractors/AccessibilityElement.h"
#include "foundation/ComparableText.h"
#include "product/KestroDatabase.h"

namespace kestro {
namespace {

// Whether the title says no more than the application's name.
bool isReplaceable(const Activity& activity) {
  const auto& title = activity.details.windowTitle;
  const auto& name = activity.application().localizedName;
  if (!title) return true;
  return name && isSameText(*title, *name);
}

// The heading lies three levels of first groups below the window.
std::optional<AccessibilityElement> contentHeading(const AccessibilityElement& window) {
  constexpr int groupLevels = 3;
  auto children = window.children();
  if (children.empty() || children.front().subrole() != "iOSContentGroup") return std::nullopt;
  for (int level = 0; level < groupLevels; ++level) {
    const auto group = firstWithRole(role::group, children);
    if (!group) return std::nullopt;
    children = group->children();
  }
  return firstWithRole(role::heading, children);
}

}  // namespace

void CatalystInfoExtractor::writeDetailsForActivity(Activity& activity) {
  if (!isReplaceable(activity)) return;
  for (const AccessibilityElement& window : accessibilityWindows(process_, activity)) {
    const auto heading = contentHeading(window);
    if (!heading) continue;
    const auto text = heading->stringAttribute(attribute::description);
    if (!text || text->empty()) continue;
    activity.details.windowTitle = removingInvisibleControlCharacters(*text);
    return;
  }
}

}  // namespace kestro
