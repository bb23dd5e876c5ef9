// An accessibility element with typed reads and depth-limited searches: the one way in which
// extractors and the call detector look at other applications.
//
// A failed read, or a value of another type, is the absent result. Every read costs one request;
// a search costs one or two for every element it examines, so it is always bounded. Values of this
// class are cheap to copy and belong to the process life they were made in. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "extractors/AccessibilityNames.h"
#include "platform/AttributeValue.h"
#include "platform/ElementSearch.h"
#include "platform/Workspace.h"

namespace kestro {

class Activity;
class Process;
class UIElementUtilities;

// By one search or description; more than any real page needs.
constexpr std::size_t mostElementsExamined = 20'000;

class AccessibilityElement {
 public:
  using List = std::vector<AccessibilityElement>;
  using Predicate = std::function<bool(const AccessibilityElement&)>;
  using Conditions = std::vector<ElementCondition>;

  AccessibilityElement(Process& process, UIElement handle);

  Process& process() const { return *process_; }
  const UIElement& handle() const { return handle_; }
  bool operator==(const AccessibilityElement& other) const { return handle_ == other.handle_; }

  List children() const { return elementsAttribute(attribute::children); }
  List contents() const { return elementsAttribute(attribute::contents); }
  List selectedRows() const { return elementsAttribute(attribute::selectedRows); }
  List childrenInNavigationOrder() const {
    return elementsAttribute(attribute::childrenInNavigationOrder);
  }
  // The elements in the attribute's list; empty when it is no list of elements.
  List elementsAttribute(std::string_view name) const;

  std::optional<std::string> role() const { return stringAttribute(attribute::role); }
  std::optional<std::string> subrole() const { return stringAttribute(attribute::subrole); }
  std::optional<std::string> title() const { return stringAttribute(attribute::title); }
  std::optional<std::string> value() const { return stringAttribute(attribute::value); }
  std::optional<std::string> stringAttribute(std::string_view name) const;
  // As `stringAttribute`, but an empty text counts as absent.
  std::optional<std::string> nonEmptyString(std::string_view name) const;
  std::optional<bool> booleanAttribute(std::string_view name) const;
  // The texts in the attribute's list; absent when it is no list of texts.
  std::optional<std::vector<std::string>> stringListAttribute(std::string_view name) const;
  bool hasDOMClass(std::string_view name) const;
  // The element's web address, in its absolute form when the attribute holds an address.
  std::optional<std::string> urlString() const;
  std::optional<AccessibilityElement> parent() const { return elementAttribute(attribute::parent); }
  std::optional<AccessibilityElement> elementAttribute(std::string_view name) const;
  std::optional<AccessibilityElement> asElement(const std::optional<AttributeValue>& value) const;

  // The first element in pre-order, among this one and its descendants down to `maxDepth` levels
  // below it, that satisfies the predicate. 0 or less examines this element only. Absent too after
  // `mostElementsExamined`: a tree may lead back to itself.
  std::optional<AccessibilityElement> firstDescendant(std::int64_t maxDepth,
                                                      const Predicate& predicate) const;
  // The same where all conditions must hold: one request when the platform searches for itself, as
  // scenes do; otherwise one or two for every element on the way. Prefer it to a predicate.
  std::optional<AccessibilityElement> firstDescendantWith(const Conditions& conditions,
                                                          std::int64_t maxDepth) const;
  std::optional<AccessibilityElement> firstDescendantWithRole(std::string_view role,
                                                              std::int64_t maxDepth) const;
  std::optional<AccessibilityElement> firstDescendantWithSubrole(std::string_view subrole,
                                                                 std::int64_t maxDepth) const;
  // All of them, or the first `mostFound`, in pre-order; this element may be the first.
  List descendantsWith(const Conditions& conditions, std::int64_t maxDepth,
                       std::size_t mostFound = mostElementsExamined) const;
  // The first element on the way from this one down its first children that satisfies the
  // predicate.
  std::optional<AccessibilityElement> firstAlongFirstChildren(std::int64_t maxDepth,
                                                              const Predicate& predicate) const;

  // Writes whose outcome is not known.
  void setStringValue(std::string_view text, std::string_view attribute) const;
  void setNumberValue(const AttributeValue& value, std::string_view attribute) const;

 private:
  const UIElementUtilities& utilities() const;
  std::optional<AttributeValue> attributeValue(std::string_view name) const;
  bool meets(const Conditions& conditions) const;
  List search(const Conditions& conditions, std::int64_t maxDepth, std::size_t mostFound) const;

  Process* process_;
  UIElement handle_;
};

using AccessibilityElements = AccessibilityElement::List;

// For searches: the element has this class among those that its page gives it.
inline ElementCondition hasClass(std::string name) {
  return {attribute::domClassList, std::move(name), ElementCondition::Kind::member};
}

// The depth that callers pass to searches when they want to search as deep as allowed: the
// preference AXUIElement_maxRecursionLevel, 20 when absent, 1000 at most, read once per process.
std::int64_t maxRecursionLevel(Process& process);

// The windows that the probe stored in the activity; empty when it stored none.
AccessibilityElements accessibilityWindows(Process& process, const Activity& activity);

// The children of each element in turn.
AccessibilityElements childrenOfAll(const AccessibilityElements& elements);

// The elements around this one, the nearest first, up to `top` and with it; each once, should they
// lead back. One request for each.
AccessibilityElements ancestorsUpTo(const AccessibilityElement& top,
                                    const AccessibilityElement& element);

// Filters. An element whose attribute cannot be read does not match.
std::optional<AccessibilityElement> firstMatching(const AccessibilityElement::Predicate& predicate,
                                                  const AccessibilityElements& list);
AccessibilityElements allWithRole(std::string_view role, const AccessibilityElements& list);
std::optional<AccessibilityElement> firstWithRole(std::string_view role,
                                                  const AccessibilityElements& list);
std::optional<AccessibilityElement> lastWithRole(std::string_view role,
                                                 const AccessibilityElements& list);
std::optional<AccessibilityElement> firstWithRoleAndSubrole(std::string_view role,
                                                            std::string_view subrole,
                                                            const AccessibilityElements& list);
std::optional<AccessibilityElement> firstWithDOMIdentifier(std::string_view identifier,
                                                           const AccessibilityElements& list);
bool containsElement(const AccessibilityElements& list, const AccessibilityElement& element);

// The non-empty titles of all windows of these applications, in their order.
std::vector<std::string> windowTitles(Process& process,
                                      const std::vector<RunningApplication>& applications);

}  // namespace kestro

template <>
struct std::hash<kestro::AccessibilityElement> {
  std::size_t operator()(const kestro::AccessibilityElement& element) const {
    return element.handle().hash();
  }
};
