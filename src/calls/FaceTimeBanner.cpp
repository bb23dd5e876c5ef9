#include "calls/FaceTimeBanner.h"

#include <algorithm>

#include "extractors/AccessibilityElement.h"
#include "extractors/TitleParts.h"
#include "foundation/TextCase.h"
#include "platform/Process.h"

namespace kestro {
namespace {

std::optional<AccessibilityElement> bannerOf(const AccessibilityElement& window) {
  const auto scrollArea =
      window.firstDescendantWithRole(role::scrollArea, maxRecursionLevel(window.process()));
  if (!scrollArea) return std::nullopt;
  const auto group = firstWithRole("AXOpaqueProviderGroup", scrollArea->children());
  return group ? firstWithRole(role::group, group->children()) : std::nullopt;
}

// Names are embedded left to right, whatever the language around them.
std::string withoutEmbedding(std::string text) {
  return withoutEvery(withoutEvery(std::move(text), "\u202A"), "\u202C");
}

std::vector<std::string> textsOf(const AccessibilityElements& elements) {
  std::vector<std::string> texts;
  for (const AccessibilityElement& element : allWithRole(role::staticText, elements)) {
    auto text = withoutEmbedding(element.value().value_or(""));
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

bool hasFaceTimeButton(const AccessibilityElements& elements) {
  return std::ranges::any_of(
      allWithRole(role::button, elements), [](const AccessibilityElement& button) {
        const auto description = button.stringAttribute(attribute::description);
        return description && lowercased(*description).find("facetime") != std::string::npos;
      });
}

}  // namespace

std::vector<std::vector<std::string>> faceTimeBanners(Process& process) {
  std::vector<std::vector<std::string>> banners;
  const Platform& platform = process.platform();
  for (const RunningApplication& application :
       platform.workspace.runningApplications("com.apple.notificationcenterui")) {
    const auto handle = platform.accessibility.applicationElement(application.processIdentifier);
    if (!handle) continue;
    const AccessibilityElement center(process, *handle);
    for (const AccessibilityElement& window : center.elementsAttribute(attribute::windows)) {
      const auto banner = bannerOf(window);
      if (!banner) continue;
      const auto elements = banner->children();
      auto texts = textsOf(elements);
      if (!texts.empty() && hasFaceTimeButton(elements)) banners.push_back(std::move(texts));
    }
  }
  return banners;
}

}  // namespace kestro
