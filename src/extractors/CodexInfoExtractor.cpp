#include "extractors/CodexInfoExtractor.h"

#include <algorithm>

#include "extractors/ContextPath.h"
#include "extractors/EnhancedAccessibility.h"
#include "extractors/StaticTexts.h"
#include "foundation/ComparableText.h"
#include "product/KestroDatabase.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr int codexTextDepth = 8;

// The title stands in the part of the button that takes the room left by icons and the age.
std::optional<std::string> threadTitle(const AccessibilityElement& button) {
  auto parts = button.descendantsWith({hasClass("flex-1")}, codexTextDepth);
  std::erase(parts, button);
  return firstNonNil(parts, [](const AccessibilityElement& part) {
    return lineOf(staticTexts(part, codexTextDepth));
  });
}

// The first text below the header; without one its title or that of the button that opens it.
std::optional<std::string> sectionLabel(const AccessibilityElement& header) {
  const auto texts = staticTexts(header, codexTextDepth);
  if (!texts.empty()) return lineOf({texts.front()});
  if (auto title = header.nonEmptyString(attribute::title)) return title;
  const auto toggle = header.firstDescendantWithSubrole(subrole::toggleButton, codexTextDepth);
  return toggle ? toggle->nonEmptyString(attribute::title) : std::nullopt;
}

bool isApplicationGroup(const AccessibilityElement& element) {
  return element.subrole() == subrole::applicationGroup;
}

bool hasFolderClass(const AccessibilityElement& element) {
  const auto classes = element.stringListAttribute(attribute::domClassList);
  return classes && std::ranges::any_of(*classes, [](const std::string& name) {
           return name.starts_with("group/cw");
         });
}

// What names a section: the one section header among its children or, of a project's folder, the
// row of the one button that opens and closes it. That row may be marked instead of the folder; a
// folder inside is another section.
std::optional<AccessibilityElement> headerOf(const AccessibilityElement& section) {
  auto header = only(
      section.descendantsWith({{attribute::subrole, std::string(subrole::sectionHeader)}}, 1, 2));
  if (header && *header != section) return header;
  const auto toggle = only(
      section.descendantsWith({{attribute::subrole, std::string(subrole::toggleButton)}}, 2, 2));
  const auto row = toggle ? toggle->parent() : std::nullopt;
  if (!row) return std::nullopt;
  if (isApplicationGroup(section) || hasFolderClass(section)) return *row == section ? toggle : row;
  return !isApplicationGroup(*row) && hasFolderClass(*row) ? row : std::nullopt;
}

std::optional<std::string> projectAround(const AccessibilityElement& button,
                                         const AccessibilityElement& sidebar) {
  const auto header = firstNonNil(ancestorsUpTo(sidebar, button), headerOf);
  return header ? sectionLabel(*header) : std::nullopt;
}

std::vector<std::string> contextPathIn(const AccessibilityElement& sidebar) {
  const auto button = sidebar.firstDescendantWith(
      {{attribute::role, std::string(role::button)}, hasClass("bg-primary-ghost-hover")},
      maxRecursionLevel(sidebar.process()));
  const auto thread = button ? threadTitle(*button) : std::nullopt;
  if (!thread) return {};
  return codexContextPath(projectAround(*button, sidebar), *thread);
}

std::vector<std::string> codexPath(const AccessibilityElement& window) {
  const auto sidebars =
      window.descendantsWith({{attribute::subrole, std::string(subrole::landmarkNavigation)}},
                             maxRecursionLevel(window.process()));
  for (const AccessibilityElement& sidebar : sidebars) {
    auto path = contextPathIn(sidebar);
    if (!path.empty()) return path;
  }
  return {};
}

}  // namespace

std::vector<std::string> codexContextPath(const std::optional<std::string>& project,
                                          const std::string& thread) {
  std::vector<std::string> path;
  if (project) path.push_back(*project);
  if (!isSameText(thread, "New Chat")) path.push_back(thread);
  return path;
}

void CodexInfoExtractor::writeDetailsForActivity(Activity& activity) {
  enableEnhancedAccessibility(process_, activity);
  writeFirstContextPath(process_, activity, codexPath);
}

}  // namespace kestro
