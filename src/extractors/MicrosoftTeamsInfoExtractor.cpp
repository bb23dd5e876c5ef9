#include "extractors/MicrosoftTeamsInfoExtractor.h"

#include "extractors/EnhancedAccessibility.h"
#include "extractors/TitleParts.h"
#include "foundation/ComparableText.h"
#include "product/KestroLegacy.h"

namespace kestro {

MicrosoftTeamsInfoExtractor::MicrosoftTeamsInfoExtractor(Process& process)
    : process_(process), nameWithAddition_(R"(^(.+) \((.+)\)$)") {}

std::vector<std::string> MicrosoftTeamsInfoExtractor::contextPath(
    std::string_view windowTitle) const {
  auto parts = titleParts(windowTitle, " | ");
  std::erase_if(parts, [](const std::string& part) {
    return isSameText(part, "Microsoft Teams") || isSameText(part, "Chat");
  });
  if (areEmpty(parts)) return {};
  const auto match = firstMatch(parts.front(), nameWithAddition_);
  if (match) parts.front() = match->captures[1].value_or("");
  return parts;
}

void MicrosoftTeamsInfoExtractor::writeDetailsForActivity(Activity& activity) {
  ActivityDetails& details = activity.details;
  if (!details.windowTitle) return;
  // Only the second generation is a web view without a tree of its own.
  if (activity.applicationBundleIdentifier() == "com.microsoft.teams2") {
    enableEnhancedAccessibility(process_, activity);
  }
  auto path = contextPath(*details.windowTitle);
  if (!path.empty()) details.contextPath = std::move(path);
}

}  // namespace kestro
