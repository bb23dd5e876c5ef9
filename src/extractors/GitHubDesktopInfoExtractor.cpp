#include "extractors/GitHubDesktopInfoExtractor.h"

#include <algorithm>
#include <array>

#include "extractors/ContextPath.h"
#include "extractors/EnhancedAccessibility.h"
#include "extractors/StaticTexts.h"
#include "extractors/WebAreas.h"
#include "foundation/ComparableText.h"

namespace kestro {
namespace {

std::optional<AccessibilityElement> toolbarOf(const AccessibilityElement& webArea) {
  constexpr int groupLevels = 3;
  std::optional<AccessibilityElement> element = webArea;
  for (int level = 0; element && level < groupLevels; ++level) {
    element = firstWithRole(role::group, element->children());
  }
  if (element) element = firstWithDOMIdentifier("desktop-app-contents", element->children());
  return element ? firstWithDOMIdentifier("desktop-app-toolbar", element->children())
                 : std::nullopt;
}

// Repository, then branch; a button further on names neither.
std::vector<std::string> namesIn(const AccessibilityElement& toolbar) {
  constexpr std::size_t mostNames = 2;
  constexpr int textDepth = 8;
  std::vector<std::string> names;
  for (const AccessibilityElement& button : toolbar.children()) {
    if (names.size() == mostNames) break;
    if (!button.hasDOMClass("toolbar-button")) continue;
    if (auto name = gitHubDesktopName(staticTexts(button, textDepth))) {
      names.push_back(std::move(*name));
    }
  }
  return names;
}

std::vector<std::string> gitHubDesktopPath(const AccessibilityElement& window) {
  for (const AccessibilityElement& webArea : webAreas(window, nullptr)) {
    const auto toolbar = toolbarOf(webArea);
    auto path = toolbar ? namesIn(*toolbar) : std::vector<std::string>();
    if (!path.empty()) return path;
  }
  return {};
}

// The button of the remote is labelled with what it would do or does.
bool isActionLabel(std::string_view text) {
  constexpr std::array<std::string_view, 5> verbs{"fetch", "pull", "push", "publish", "force push"};
  const std::string label = caselessText(text);
  return std::ranges::any_of(verbs, [&](std::string_view verb) {
    if (!label.starts_with(verb)) return false;
    const std::string rest = label.substr(verb.size());
    return rest.empty() || rest.starts_with(' ') || rest.starts_with("ing");
  });
}

bool isLabel(std::string_view text) {
  const std::string label = caselessText(text);
  return label == "current repository" || label == "current branch" || isActionLabel(text);
}

}  // namespace

std::optional<std::string> gitHubDesktopName(const std::vector<std::string>& buttonTexts) {
  if (buttonTexts.empty()) return std::nullopt;
  if (buttonTexts.size() == 1) {
    return isLabel(buttonTexts.front()) ? std::nullopt : std::optional(buttonTexts.front());
  }
  return isActionLabel(buttonTexts.front()) ? std::nullopt : std::optional(buttonTexts[1]);
}

void GitHubDesktopInfoExtractor::writeDetailsForActivity(Activity& activity) {
  enableEnhancedAccessibility(process_, activity);
  writeFirstContextPath(process_, activity, gitHubDesktopPath);
}

}  // namespace kestro
