#include "extractors/NotionInfoExtractor.h"

#include <algorithm>
#include <array>
#include <unordered_set>

#include "extractors/ContextPath.h"
#include "extractors/EnhancedAccessibility.h"
#include "extractors/WebAreas.h"
#include "foundation/ComparableText.h"
#include "foundation/TextCase.h"

namespace kestro {
namespace {

using Conditions = AccessibilityElement::Conditions;

// What a line of crumbs looks like: pages with icons and separators between them, each perhaps in a
// few groups. The page itself holds hundreds of parts.
constexpr std::size_t mostCrumbs = 60;
constexpr int mostWrappers = 3;

constexpr std::array crumbRoles{role::link, role::button, role::group};

bool isCrumbRole(const std::optional<std::string>& elementRole) {
  return elementRole && std::ranges::find(crumbRoles, *elementRole) != crumbRoles.end();
}

std::optional<std::string> crumbLabel(const AccessibilityElement& element) {
  if (auto title = element.nonEmptyString(attribute::title)) return title;
  return element.nonEmptyString(attribute::description);
}

// The name of a link, button or group, or of the only one that it wraps.
std::optional<std::string> crumbName(AccessibilityElement element) {
  for (int wrapped = 0; wrapped <= mostWrappers; ++wrapped) {
    if (!isCrumbRole(element.role())) return std::nullopt;
    const auto label = crumbLabel(element);
    // "/", "…" and icons name no page.
    if (label) return hasLetterOrDigit(*label) ? label : std::nullopt;
    const auto children = element.children();
    if (children.size() != 1) return std::nullopt;
    element = children.front();
  }
  return std::nullopt;
}

// The sidebar names pages too, one below the other.
bool isInListOfPages(const AccessibilityElement& element) {
  constexpr std::array lists{role::list, role::outline, role::table};
  std::unordered_set<AccessibilityElement> climbed;
  std::optional<AccessibilityElement> ancestor = element;
  while (ancestor && climbed.insert(*ancestor).second) {
    const auto elementRole = ancestor->role();
    if (elementRole == role::webArea || elementRole == role::window) return false;
    if (elementRole && std::ranges::find(lists, *elementRole) != lists.end()) return true;
    if (ancestor->subrole() == subrole::landmarkNavigation) return true;
    ancestor = ancestor->parent();
  }
  return false;
}

// Words between links make a line of the page's text; what separates crumbs has no letters.
bool isWords(const AccessibilityElement& element) {
  if (element.role() != role::staticText) return false;
  const auto text = element.value();
  return text && hasLetterOrDigit(*text);
}

// Empty too for a line of text.
ContextPath namesBefore(const AccessibilityElement& crumb, const AccessibilityElements& siblings) {
  ContextPath names;
  for (const AccessibilityElement& sibling : siblings) {
    if (sibling == crumb) break;
    if (isWords(sibling)) return {};
    if (auto name = crumbName(sibling)) names.push_back(std::move(*name));
  }
  return names;
}

// The names before the entry in the line that it ends, and the entry's own. Empty when there is no
// such line.
ContextPath pathEndingAt(const AccessibilityElement& entry) {
  const auto title = crumbLabel(entry);
  AccessibilityElement crumb = entry;
  for (int climbed = 0; title && climbed <= mostWrappers; ++climbed) {
    const auto container = crumb.parent();
    if (!container || container->role() != role::group) return {};
    const auto siblings = container->children();
    if (siblings.size() > mostCrumbs || !containsElement(siblings, crumb)) return {};
    ContextPath path = namesBefore(crumb, siblings);
    if (!path.empty()) {
      path.push_back(*title);
      return path;
    }
    crumb = *container;
  }
  return {};
}

// How the open page's entry is known: by the window's title or, without one, by the page's address.
std::vector<Conditions> entryConditions(const ActivityDetails& details) {
  std::vector<Conditions> searches;
  if (details.windowTitle && !comparableText(*details.windowTitle).empty()) {
    for (const std::string_view wanted : crumbRoles) {
      for (const std::string_view label : {attribute::title, attribute::description}) {
        searches.push_back({{attribute::role, std::string(wanted)},
                            ElementCondition::says(label, *details.windowTitle)});
      }
    }
  } else if (details.documentPath) {
    searches.push_back({{attribute::role, std::string(role::link)},
                        {attribute::url, *details.documentPath, ElementCondition::Kind::address}});
  }
  return searches;
}

ContextPath pathIn(const AccessibilityElement& webArea, const ActivityDetails& details) {
  const auto depth = maxRecursionLevel(webArea.process());
  for (const Conditions& conditions : entryConditions(details)) {
    for (const AccessibilityElement& entry : webArea.descendantsWith(conditions, depth)) {
      if (isInListOfPages(entry)) continue;
      auto path = pathEndingAt(entry);
      if (!path.empty()) return path;
    }
  }
  return {};
}

}  // namespace

void NotionInfoExtractor::writeDetailsForActivity(Activity& activity) {
  enableEnhancedAccessibility(process_, activity);
  writeFirstContextPath(process_, activity, [&](const AccessibilityElement& window) {
    for (const AccessibilityElement& webArea : webAreas(window, nullptr)) {
      auto path = pathIn(webArea, activity.details);
      if (!path.empty()) return path;
    }
    return ContextPath();
  });
}

}  // namespace kestro
