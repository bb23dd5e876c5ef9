#include "extractors/NotesInfoExtractor.h"

#include <algorithm>

#include "accessibility/UIElementUtilities.h"
#include "extractors/AccessibilityElement.h"
#include "foundation/ComparableText.h"
#include "product/KestroLegacy.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr std::size_t longestText = 50;

struct PlacedText {
  std::string text;
  Point position;
};

void collectTexts(const AccessibilityElement& cell, std::vector<PlacedText>& texts) {
  constexpr int depth = 4;
  for (const AccessibilityElement& element :
       cell.descendantsWith({{attribute::role, std::string(role::staticText)}}, depth)) {
    auto text = element.value();
    if (!text) continue;
    const auto& utilities = element.process().shared<UIElementUtilities>();
    texts.push_back({std::move(*text), utilities.originOfUIElement(element.handle())});
  }
}

// The cells of the rows that are selected in a list; empty when it is no list of rows with cells.
AccessibilityElements selectedCells(const AccessibilityElement& list) {
  AccessibilityElements cells;
  for (const AccessibilityElement& row : list.selectedRows()) {
    if (row.role() != role::row) continue;
    const auto ofRow = allWithRole(role::cell, row.children());
    cells.insert(cells.end(), ofRow.begin(), ofRow.end());
  }
  return cells;
}

// The lists of notes: what the scroll areas of the window's split view hold.
AccessibilityElements noteLists(const AccessibilityElement& window) {
  const auto splitGroup = firstWithRole(role::splitGroup, window.children());
  if (!splitGroup) return {};
  auto scrollAreas = splitGroup->children();
  std::erase_if(scrollAreas,
                [](const AccessibilityElement& child) { return child.role() != role::scrollArea; });
  return childrenOfAll(scrollAreas);
}

std::optional<std::string> selectedNote(const AccessibilityElement& window) {
  std::vector<PlacedText> texts;
  for (const AccessibilityElement& list : noteLists(window)) {
    std::vector<PlacedText> found;
    for (const AccessibilityElement& cell : selectedCells(list)) {
      collectTexts(cell, found);
    }
    if (found.empty()) continue;
    texts = std::move(found);
    // Outlines come first: that of the folders, then perhaps one of notes.
    if (list.role() != role::outline) break;
  }
  std::ranges::stable_sort(texts, [](const PlacedText& left, const PlacedText& right) {
    return std::pair(left.position.y, left.position.x) <
           std::pair(right.position.y, right.position.x);
  });
  return texts.empty() ? std::nullopt : noteTitle(texts.front().text);
}

// Whether the title says more than the application's name.
bool namesNote(const std::string& title, const std::optional<std::string>& applicationName) {
  return !applicationName || !isSameText(title, *applicationName);
}

}  // namespace

std::optional<std::string> noteTitle(const std::string& text) {
  if (comparableText(text).starts_with("…")) return std::nullopt;
  return truncated(text, longestText, TruncationPosition::end);
}

void NotesInfoExtractor::writeDetailsForActivity(Activity& activity) {
  ActivityDetails& details = activity.details;
  if (const auto note = firstNonNil(accessibilityWindows(process_, activity), selectedNote)) {
    details.contextPath = {*note};
    return;
  }
  const auto& title = details.windowTitle;
  if (title && namesNote(*title, activity.application().localizedName)) {
    details.contextPath = {*title};
  }
}

}  // namespace kestro
