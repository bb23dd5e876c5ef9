#include "extractors/WebAreaTitleInfoExtractor.h"

#include "extractors/EnhancedAccessibility.h"
#include "extractors/WebAreas.h"
#include "foundation/ComparableText.h"

namespace kestro {

std::string pageTitleWithoutApplicationName(std::string_view title,
                                            const std::optional<std::string>& applicationName) {
  if (!applicationName) return std::string(title);
  return removingSameSuffix(title, " • " + *applicationName);
}

void WebAreaTitleInfoExtractor::writeDetailsForActivity(Activity& activity) {
  const auto windows = accessibilityWindows(process_, activity);
  if (windows.empty()) return;
  enableEnhancedAccessibility(process_, activity);

  auto& title = activity.details.windowTitle;
  const auto keptTitle = title;
  title.reset();
  for (const AccessibilityElement& window : windows) {
    webAreas(window, &activity);
    if (title && !title->empty()) break;
  }
  title = title ? pageTitleWithoutApplicationName(*title, activity.application().localizedName)
                : keptTitle;
}

}  // namespace kestro
