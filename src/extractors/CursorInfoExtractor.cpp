#include "extractors/CursorInfoExtractor.h"

#include "extractors/AccessibilityElement.h"
#include "extractors/EnhancedAccessibility.h"
#include "extractors/StaticTexts.h"
#include "product/KestroDatabase.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr int cursorTextDepth = 8;

// By the first title tab that says it is this window's.
std::optional<std::string> chatTitle(const AccessibilityElement& window) {
  const auto tabs = window.descendantsWith({hasClass("chat-title-tab-trigger")},
                                           maxRecursionLevel(window.process()));
  const auto tab = firstMatching(
      [&](const AccessibilityElement& found) {
        return found.elementAttribute(attribute::window) == window;
      },
      tabs);
  return tab ? lineOf(staticTextsOrSigns(*tab, cursorTextDepth)) : std::nullopt;
}

// A head shows its section's name first; a number of chats may follow.
std::optional<std::string> nameIn(const AccessibilityElement& head) {
  const auto texts = staticTexts(head, cursorTextDepth);
  return texts.empty() ? head.nonEmptyString(attribute::title) : lineOf({texts.front()});
}

// The head of the section that the entry stands in. Several heads side by side leave open which one
// it is; an entry that is part of a head is a section of the chat's name.
std::optional<AccessibilityElement> headAround(const AccessibilityElement& entry,
                                               const AccessibilityElement& sidebar) {
  for (const AccessibilityElement& ancestor : ancestorsUpTo(sidebar, entry)) {
    const auto heads = ancestor.descendantsWith({hasClass("ui-sidebar-section-head")}, 1, 2);
    if (heads.empty()) continue;
    if (heads.front() == ancestor || heads.front() == entry) return std::nullopt;
    return only(heads);
  }
  return std::nullopt;
}

std::optional<std::string> sectionName(const AccessibilityElement& window,
                                       const std::string& title) {
  const auto depth = maxRecursionLevel(window.process());
  const auto sidebar = window.firstDescendantWith(
      {{attribute::subrole, std::string(subrole::landmarkNavigation)}, hasClass("ui-sidebar")},
      depth);
  if (!sidebar) return std::nullopt;
  const auto entries =
      sidebar->descendantsWith({ElementCondition::says(attribute::value, title)}, depth);
  const auto head = firstNonNil(
      entries, [&](const AccessibilityElement& entry) { return headAround(entry, *sidebar); });
  return head ? nameIn(*head) : std::nullopt;
}

}  // namespace

void CursorInfoExtractor::writeDetailsForActivity(Activity& activity) {
  const auto windows = accessibilityWindows(process_, activity);
  if (windows.empty() || activity.details.documentPath) return;
  enableEnhancedAccessibility(process_, activity);
  const AccessibilityElement& window = windows.front();
  const auto title = chatTitle(window);
  if (!title) return;
  std::vector<std::string> path;
  if (auto section = sectionName(window, *title)) path.push_back(std::move(*section));
  path.push_back(*title);
  activity.details.contextPath = std::move(path);
}

}  // namespace kestro
