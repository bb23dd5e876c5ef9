#include "extractors/FinalCutInfoExtractor.h"

#include <algorithm>
#include <unordered_set>

#include "extractors/ContextPath.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

// Split views lie in one another; the rows of an outline are not looked through.
constexpr int splitGroupDepth = 6;
constexpr int scrollAreaDepth = 6;
constexpr int outlineDepth = 3;
constexpr int depthInRow = 3;

std::optional<AccessibilityElement> outlineIn(const AccessibilityElement& scrollArea) {
  if (auto outline = firstWithRole(role::outline, scrollArea.contents())) return outline;
  return scrollArea.firstDescendantWithRole(role::outline, outlineDepth);
}

AccessibilityElements textsOf(const AccessibilityElement& row, std::string_view wantedRole) {
  return row.descendantsWith({{attribute::role, std::string(wantedRole)}}, depthInRow);
}

// A name can be edited; the static texts beside it are counters, and names only where it cannot.
std::optional<std::string> nameOf(const AccessibilityElement& row) {
  auto texts = textsOf(row, role::textField);
  if (texts.empty()) texts = textsOf(row, role::staticText);
  return firstNonNil(texts, [](const auto& text) { return text.nonEmptyString(attribute::value); });
}

// From the outermost row to this one; rows without a name are passed over. Rows may disclose each
// other: each counts once.
ContextPath pathTo(const AccessibilityElement& selectedRow) {
  ContextPath path;
  std::unordered_set<AccessibilityElement> climbed;
  std::optional<AccessibilityElement> row = selectedRow;
  while (row && climbed.insert(*row).second) {
    if (auto name = nameOf(*row)) path.push_back(std::move(*name));
    row = row->elementAttribute(attribute::disclosedByRow);
  }
  std::ranges::reverse(path);
  return path;
}

std::vector<std::string> selectedPath(const AccessibilityElement& window) {
  const auto splitGroup = window.firstDescendantWithRole(role::splitGroup, splitGroupDepth);
  if (!splitGroup) return {};
  for (const AccessibilityElement& scrollArea : splitGroup->descendantsWith(
           {{attribute::role, std::string(role::scrollArea)}}, scrollAreaDepth)) {
    const auto outline = outlineIn(scrollArea);
    const auto rows = outline ? outline->selectedRows() : AccessibilityElements{};
    if (rows.empty()) continue;
    auto path = pathTo(rows.front());
    if (!path.empty()) return path;
  }
  return {};
}

}  // namespace

void FinalCutInfoExtractor::writeDetailsForActivity(Activity& activity) {
  writeFirstContextPath(process_, activity, selectedPath);
}

}  // namespace kestro
