#include "extractors/WebAreas.h"

#include <cmath>

#include "accessibility/UIElementUtilities.h"
#include "platform/Accessibility.h"
#include "platform/Process.h"
#include "product/Activity.h"

namespace kestro {
namespace {

constexpr int maximumAncestors = 100;
constexpr int maximumEnclosingWebAreas = 5;

std::optional<AccessibilityElement> elementAt(const AccessibilityElement& window,
                                              std::optional<double> offsetX,
                                              std::optional<double> offsetY) {
  const auto application = window.parent();
  if (!application) return std::nullopt;
  Process& process = window.process();
  const auto& utilities = process.shared<UIElementUtilities>();
  const Point origin = utilities.originOfUIElement(window.handle());
  const Size size = utilities.sizeOfUIElement(window.handle());
  const double x = origin.x + offsetX.value_or(size.width / 2);
  const double y = origin.y + offsetY.value_or(size.height / 2);
  const auto hit = process.platform().accessibility.copyElementAtPosition(
      application->handle(), std::floor(static_cast<float>(x)), std::floor(static_cast<float>(y)));
  return hit.value ? std::optional<AccessibilityElement>(std::in_place, process, *hit.value)
                   : std::nullopt;
}

// The first web area among the element and its ancestors.
std::optional<AccessibilityElement> webAreaAround(std::optional<AccessibilityElement> element) {
  for (int examined = 0; element && examined < maximumAncestors; ++examined) {
    if (element->role() == role::webArea) return element;
    element = element->parent();
  }
  return std::nullopt;
}

bool hasWebAddress(const AccessibilityElement& webArea) {
  const auto address = webArea.urlString();
  return address && (address->starts_with("http://") || address->starts_with("https://"));
}

void fillWindowTitle(Activity& activity, const AccessibilityElements& areas) {
  if (activity.details.windowTitle) return;
  for (const AccessibilityElement& area : areas) {
    const auto title = area.title();
    if (!title || title->empty()) continue;
    activity.details.windowTitle = title;
    return;
  }
}

}  // namespace

AccessibilityElements webAreas(const AccessibilityElement& window, Activity* activity,
                               std::optional<double> offsetX, std::optional<double> offsetY) {
  const auto scrollAreas = allWithRole(role::scrollArea, window.children());
  auto areas = allWithRole(role::webArea, childrenOfAll(scrollAreas));
  if (areas.empty()) {
    const auto hit = elementAt(window, offsetX, offsetY);
    const auto page = hit ? outermostWebArea(*hit) : std::nullopt;
    if (page) areas.push_back(*page);
  }
  if (activity) fillWindowTitle(*activity, areas);
  return areas;
}

std::optional<AccessibilityElement> outermostWebArea(const AccessibilityElement& element) {
  auto result = webAreaAround(element);
  auto enclosing = result;
  for (int climbed = 0; enclosing && climbed < maximumEnclosingWebAreas; ++climbed) {
    enclosing = webAreaAround(enclosing->parent());
    if (enclosing && hasWebAddress(*enclosing)) result = enclosing;
  }
  return result;
}

}  // namespace kestro
