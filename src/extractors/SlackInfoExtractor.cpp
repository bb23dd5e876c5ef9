#include "extractors/SlackInfoExtractor.h"

#include <algorithm>

#include "extractors/EnhancedAccessibility.h"
#include "extractors/TitleParts.h"
#include "extractors/WebAreas.h"
#include "foundation/ComparableText.h"
#include "product/KestroLegacy.h"
#include "product/KestroUI.h"

namespace kestro {

SlackInfoExtractor::SlackInfoExtractor(Process& process)
    : process_(process),
      applicationName_(R"(^Slack(?:\s+\[[^\]]+\])?$)"),
      callTimer_(R"(^\d?\d?:?\d\d:\d\d$)"),
      unreadCounter_(R"(^\d{1,3} \w+)"),
      marker_(R"(^(!|\*|\^) (.*)$)"),
      trailingCounter_(R"(^\d+ .+$)") {}

bool SlackInfoExtractor::isDecoration(const std::string& titlePart) const {
  const std::string part = comparableText(titlePart);
  return matches(part, applicationName_) || matches(part, callTimer_) ||
         part.find(" new items") != std::string::npos || matches(part, unreadCounter_);
}

std::vector<std::string> SlackInfoExtractor::contextPath(std::string_view windowTitle) const {
  const std::string title = removingTrailingEmojiAndWhitespace(windowTitle);
  auto parts = titleParts(title, title.find(" | ") == std::string::npos ? " - " : " | ");
  std::erase_if(parts, [&](const std::string& part) { return isDecoration(part); });
  for (std::string& part : parts) {
    if (const auto match = firstMatch(part, marker_)) part = match->captures[2].value_or("");
  }
  if (parts.size() > 1 && matches(parts.back(), trailingCounter_)) parts.pop_back();
  if (areEmpty(parts)) return {};
  std::ranges::reverse(parts);
  return parts;
}

void SlackInfoExtractor::readTitleFromPage(Activity& activity) const {
  enableEnhancedAccessibility(process_, activity);
  for (const AccessibilityElement& window : accessibilityWindows(process_, activity)) {
    webAreas(window, &activity);
    if (activity.details.windowTitle) return;
  }
}

void SlackInfoExtractor::writeDetailsForActivity(Activity& activity) {
  ActivityDetails& details = activity.details;
  if (!details.windowTitle) readTitleFromPage(activity);
  if (!details.windowTitle) return;
  auto path = contextPath(*details.windowTitle);
  if (path.empty()) return;
  details.windowTitle.reset();
  details.contextPath = std::move(path);
}

}  // namespace kestro
