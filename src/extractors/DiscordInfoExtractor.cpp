#include "extractors/DiscordInfoExtractor.h"

#include <algorithm>

#include "extractors/TitleParts.h"
#include "foundation/ComparableText.h"

namespace kestro {

std::vector<std::string> discordContextPath(std::string_view windowTitle) {
  auto parts = titleParts(removingSameSuffix(windowTitle, " - Discord"), " | ");
  std::erase_if(
      parts, [](const std::string& part) { return part.empty() || isSameText(part, "Discord"); });
  std::ranges::reverse(parts);
  return parts;
}

void DiscordInfoExtractor::writeDetailsForActivity(Activity& activity) {
  ActivityDetails& details = activity.details;
  if (!details.windowTitle) return;
  auto path = discordContextPath(*details.windowTitle);
  if (path.empty()) return;
  details.windowTitle.reset();
  details.contextPath = std::move(path);
}

}  // namespace kestro
