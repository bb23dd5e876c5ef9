#include "calls/TeamsCallWindow.h"

#include <algorithm>
#include <array>

#include "extractors/AccessibilityElement.h"
#include "extractors/EnhancedAccessibility.h"
#include "extractors/WebAreas.h"
#include "platform/Process.h"

namespace kestro {
namespace {

bool hasCallTimer(const AccessibilityElement& toolbar) {
  return std::ranges::any_of(toolbar.children(), [](const AccessibilityElement& child) {
    return child.stringAttribute(attribute::domIdentifier) == "call-duration-custom" ||
           child.subrole() == subrole::applicationTimer;
  });
}

std::optional<AccessibilityElement> firstGroup(const AccessibilityElement& element) {
  return firstWithRole(role::group, element.children());
}

bool isCallToolbar(const AccessibilityElement& element) {
  constexpr std::array<std::string_view, 3> names{"Calling indicators", "Meeting controls",
                                                  "Calling controls"};
  if (element.role() != role::toolbar) return false;
  const auto name = element.stringAttribute(attribute::description);
  return name && std::ranges::find(names, *name) != names.end() && hasCallTimer(element);
}

bool isClassicCallWindow(const AccessibilityElement& window, Activity& activity) {
  const auto areas = webAreas(window, &activity);
  auto group = areas.empty() ? std::nullopt : firstGroup(areas.front());
  if (group) group = firstGroup(*group);
  if (group) group = firstGroup(*group);
  if (!group) return false;
  return std::ranges::any_of(group->children(), [](const AccessibilityElement& child) {
    auto inner = firstGroup(child);
    if (inner) inner = firstGroup(*inner);
    return inner && std::ranges::any_of(inner->children(), isCallToolbar);
  });
}

bool isNewCallWindow(const AccessibilityElement& window) {
  const auto page = firstWithRole(role::webArea, window.children());
  const auto body = page ? firstGroup(*page) : std::nullopt;
  if (!body || body->stringAttribute(attribute::domIdentifier) != "child-window-body") return false;
  // The body may be the toolbar itself.
  const auto toolbar =
      body->firstDescendantWithRole(role::toolbar, maxRecursionLevel(window.process()));
  return toolbar && hasCallTimer(*toolbar);
}

}  // namespace

bool hasTeamsCallWindow(Process& process, Activity& activity) {
  const auto windows = accessibilityWindows(process, activity);
  const bool isClassic = std::ranges::any_of(windows, [&](const AccessibilityElement& window) {
    return isClassicCallWindow(window, activity);
  });
  if (isClassic) return true;
  enableEnhancedAccessibility(process, activity);
  return std::ranges::any_of(windows, isNewCallWindow);
}

}  // namespace kestro
