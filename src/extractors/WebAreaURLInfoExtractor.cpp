#include "extractors/WebAreaURLInfoExtractor.h"

#include "extractors/WebAreas.h"
#include "product/KestroUI.h"

namespace kestro {

void WebAreaURLInfoExtractor::writeDetailsForActivity(Activity& activity) {
  readWebAddress(process_, activity);
}

void WebAreaURLInfoExtractor::readWebAddress(Process& process, Activity& activity) {
  ActivityDetails& details = activity.details;
  for (const AccessibilityElement& window : accessibilityWindows(process, activity)) {
    const auto areas = webAreas(window, &activity);
    const auto title = firstNonNil(areas, [](const auto& area) { return area.title(); });
    if (title && !title->empty()) details.documentTitle = title;
    const auto address = firstNonNil(areas, [](const auto& area) { return area.urlString(); });
    if (!address || address->empty()) continue;
    details.documentPath = address;
    return;
  }
}

}  // namespace kestro
