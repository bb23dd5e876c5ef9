#include <algorithm>

#include "extractors/AccessibilityElement.h"
#include "platform/Accessibility.h"
#include "platform/Process.h"
#include "platform/UserDefaults.h"

namespace kestro {
namespace {

using Predicate = AccessibilityElement::Predicate;

struct MaxRecursionLevel {
  explicit MaxRecursionLevel(Process& process) {
    constexpr std::int64_t standard = 20;
    // Deeper than any real tree, shallow enough for the stack when a hostile one has no end.
    constexpr std::int64_t deepest = 1000;
    const auto& defaults = process.platform().defaults.standard();
    value = std::min(defaults.integer("AXUIElement_maxRecursionLevel").value_or(standard), deepest);
  }
  std::int64_t value;
};

std::optional<AccessibilityElement> firstBelow(const AccessibilityElement& element,
                                               std::int64_t depth, const Predicate& predicate,
                                               int& elementsLeft) {
  if (depth < 1 || elementsLeft <= 0) return std::nullopt;
  for (const AccessibilityElement& child : element.children()) {
    if (--elementsLeft < 0) return std::nullopt;
    if (predicate(child)) return child;
    if (auto found = firstBelow(child, depth - 1, predicate, elementsLeft)) return found;
  }
  return std::nullopt;
}

Predicate hasRole(std::string_view role) {
  return [role](const AccessibilityElement& element) { return element.role() == role; };
}

}  // namespace

std::int64_t maxRecursionLevel(Process& process) {
  return process.shared<MaxRecursionLevel>().value;
}

std::optional<AccessibilityElement> AccessibilityElement::firstDescendant(
    std::int64_t maxDepth, const Predicate& predicate) const {
  if (predicate(*this)) return *this;
  int elementsLeft = mostElementsExamined - 1;
  return firstBelow(*this, maxDepth, predicate, elementsLeft);
}

std::optional<AccessibilityElement> AccessibilityElement::firstDescendantWithRole(
    std::string_view role, std::int64_t maxDepth) const {
  return firstDescendant(maxDepth, hasRole(role));
}

std::optional<AccessibilityElement> AccessibilityElement::firstDescendantWithSubrole(
    std::string_view subrole, std::int64_t maxDepth) const {
  return firstDescendant(maxDepth, [subrole](const AccessibilityElement& element) {
    return element.subrole() == subrole;
  });
}

std::optional<AccessibilityElement> AccessibilityElement::firstAlongFirstChildren(
    std::int64_t maxDepth, const Predicate& predicate) const {
  std::optional<AccessibilityElement> element = *this;
  for (std::int64_t depth = maxDepth; depth >= 0; --depth) {
    if (predicate(*element)) return element;
    const auto children = element->children();
    if (children.empty()) return std::nullopt;
    element = children.front();
  }
  return std::nullopt;
}

AccessibilityElements childrenOfAll(const AccessibilityElements& elements) {
  AccessibilityElements all;
  for (const AccessibilityElement& element : elements) {
    const auto children = element.children();
    all.insert(all.end(), children.begin(), children.end());
  }
  return all;
}

std::optional<AccessibilityElement> firstMatching(const Predicate& predicate,
                                                  const AccessibilityElements& list) {
  const auto found = std::ranges::find_if(list, predicate);
  return found == list.end() ? std::nullopt : std::optional(*found);
}

AccessibilityElements allWithRole(std::string_view role, const AccessibilityElements& list) {
  AccessibilityElements matching;
  std::ranges::copy_if(list, std::back_inserter(matching), hasRole(role));
  return matching;
}

std::optional<AccessibilityElement> firstWithRole(std::string_view role,
                                                  const AccessibilityElements& list) {
  return firstMatching(hasRole(role), list);
}

std::optional<AccessibilityElement> lastWithRole(std::string_view role,
                                                 const AccessibilityElements& list) {
  const auto found = std::find_if(list.rbegin(), list.rend(), hasRole(role));
  return found == list.rend() ? std::nullopt : std::optional(*found);
}

std::optional<AccessibilityElement> firstWithRoleAndSubrole(std::string_view role,
                                                            std::string_view subrole,
                                                            const AccessibilityElements& list) {
  return firstMatching(
      [=](const AccessibilityElement& element) {
        return element.role() == role && element.subrole() == subrole;
      },
      list);
}

std::optional<AccessibilityElement> firstWithDOMIdentifier(std::string_view identifier,
                                                           const AccessibilityElements& list) {
  return firstMatching(
      [=](const AccessibilityElement& element) {
        return element.stringAttribute(attribute::domIdentifier) == identifier;
      },
      list);
}

bool containsElement(const AccessibilityElements& list, const AccessibilityElement& element) {
  return std::ranges::find(list, element) != list.end();
}

std::vector<std::string> windowTitles(Process& process,
                                      const std::vector<RunningApplication>& applications) {
  std::vector<std::string> titles;
  Accessibility& accessibility = process.platform().accessibility;
  for (const RunningApplication& application : applications) {
    const auto handle = accessibility.applicationElement(application.processIdentifier);
    if (!handle) continue;
    const AccessibilityElement element(process, *handle);
    for (const AccessibilityElement& window : element.elementsAttribute(attribute::windows)) {
      const auto title = window.title();
      if (title && !title->empty()) titles.push_back(*title);
    }
  }
  return titles;
}

}  // namespace kestro
