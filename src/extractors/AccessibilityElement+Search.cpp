#include <algorithm>
#include <unordered_set>

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

// What is left of a search to be done.
struct Budget {
  std::size_t toFind;
  std::size_t toExamine;
};

void collect(const AccessibilityElement& element, std::int64_t depth, const Predicate& predicate,
             Budget& budget, AccessibilityElements& found) {
  if (budget.toExamine == 0 || budget.toFind == 0) return;
  --budget.toExamine;
  if (predicate(element)) {
    found.push_back(element);
    if (--budget.toFind == 0) return;
  }
  if (depth < 1) return;
  for (const AccessibilityElement& child : element.children()) {
    collect(child, depth - 1, predicate, budget, found);
    if (budget.toFind == 0 || budget.toExamine == 0) return;
  }
}

std::optional<AccessibilityElement> firstOf(const AccessibilityElements& elements) {
  return elements.empty() ? std::nullopt : std::optional(elements.front());
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
  Budget budget{1, mostElementsExamined};
  AccessibilityElements found;
  collect(*this, maxDepth, predicate, budget, found);
  return firstOf(found);
}

std::optional<AccessibilityElement> AccessibilityElement::firstDescendantWith(
    const Conditions& conditions, std::int64_t maxDepth) const {
  return firstOf(search(conditions, maxDepth, 1));
}

AccessibilityElements AccessibilityElement::descendantsWith(const Conditions& conditions,
                                                            std::int64_t maxDepth,
                                                            std::size_t mostFound) const {
  return search(conditions, maxDepth, mostFound);
}

AccessibilityElements AccessibilityElement::search(const Conditions& conditions,
                                                   std::int64_t maxDepth,
                                                   std::size_t mostFound) const {
  AccessibilityElements found;
  const auto inBulk = process_->platform().accessibility.findElements(
      handle_, {conditions, maxDepth, mostFound, mostElementsExamined});
  if (inBulk.value) {
    for (const UIElement& handle : *inBulk.value)
      found.emplace_back(*process_, handle);
  }
  if (inBulk.error != AccessibilityError::notImplemented) return found;

  Budget budget{mostFound, mostElementsExamined};
  collect(
      *this, maxDepth,
      [&](const AccessibilityElement& element) { return element.meets(conditions); }, budget,
      found);
  return found;
}

bool AccessibilityElement::meets(const Conditions& conditions) const {
  return std::ranges::all_of(conditions, [this](const ElementCondition& condition) {
    const auto value = attributeValue(condition.attribute);
    return value && condition.holdsFor(*value);
  });
}

std::optional<AccessibilityElement> AccessibilityElement::firstDescendantWithRole(
    std::string_view role, std::int64_t maxDepth) const {
  return firstDescendantWith({{attribute::role, std::string(role)}}, maxDepth);
}

std::optional<AccessibilityElement> AccessibilityElement::firstDescendantWithSubrole(
    std::string_view subrole, std::int64_t maxDepth) const {
  return firstDescendantWith({{attribute::subrole, std::string(subrole)}}, maxDepth);
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

AccessibilityElements ancestorsUpTo(const AccessibilityElement& top,
                                    const AccessibilityElement& element) {
  AccessibilityElements ancestors;
  std::unordered_set<AccessibilityElement> climbed;
  std::optional<AccessibilityElement> current = element;
  while (*current != top && climbed.insert(*current).second) {
    current = current->parent();
    if (!current || climbed.contains(*current)) break;
    ancestors.push_back(*current);
  }
  return ancestors;
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
