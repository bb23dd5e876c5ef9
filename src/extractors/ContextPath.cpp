#include "extractors/ContextPath.h"

#include "product/Activity.h"

namespace kestro {

void writeFirstContextPath(Process& process, Activity& activity,
                           const std::function<ContextPath(const AccessibilityElement&)>& pathOf) {
  for (const AccessibilityElement& window : accessibilityWindows(process, activity)) {
    auto path = pathOf(window);
    if (path.empty()) continue;
    activity.details.contextPath = std::move(path);
    return;
  }
}

}  // namespace kestro
