#include "extractors/ChromeProfileInfoExtractor.h"

#include <algorithm>
#include <array>

#include "extractors/AccessibilityElement.h"
#include "foundation/ComparableText.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr int levelsToButton = 4;

bool isAvatarButton(const AccessibilityElement& element) {
  return element.hasDOMClass("AvatarToolbarButton");
}

std::optional<std::string> profileName(const AccessibilityElement& window) {
  std::optional<AccessibilityElement> group = window;
  for (int level = 0; group && level < levelsToButton; ++level) {
    group = firstWithRole(role::group, group->children());
  }
  const auto toolbar = group ? firstWithRole(role::toolbar, group->children()) : std::nullopt;
  const auto button = toolbar ? firstMatching(isAvatarButton, toolbar->children()) : std::nullopt;
  return button ? button->nonEmptyString(attribute::description) : std::nullopt;
}

}  // namespace

bool isChromePrivateTitle(std::string_view title) {
  constexpr std::array<std::string_view, 4> suffixes{" (Incognito)", " (anonym)",
                                                     " - Brave (Private)", " - Brave (Privat)"};
  const std::string whole = comparableText(title);
  return std::ranges::any_of(suffixes,
                             [&](std::string_view suffix) { return whole.ends_with(suffix); });
}

std::string titleWithProfile(const std::optional<std::string>& title, const std::string& profile) {
  if (!title || title->empty()) return profile;
  const bool isThere = comparableText(*title).ends_with(comparableText(profile));
  return isThere ? *title : *title + " – " + profile;
}

void ChromeProfileInfoExtractor::writeDetailsForActivity(Activity& activity) {
  ActivityDetails& details = activity.details;
  if (details.windowTitle && isChromePrivateTitle(*details.windowTitle)) {
    details.isPrivateBrowsing = true;
  }
  const auto profile = firstNonNil(accessibilityWindows(process_, activity), profileName);
  if (profile) details.windowTitle = titleWithProfile(details.windowTitle, *profile);
}

}  // namespace kestro
