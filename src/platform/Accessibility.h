// Reading and writing the user-interface elements of other applications.
//
// Every request crosses into another process and blocks for at most the messaging timeout. Failures
// are error codes, never exceptions. Main thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/AttributeValue.h"
#include "platform/ElementSearch.h"
#include "platform/SampleBudget.h"

namespace kestro {

// The designed platform's own numbers (its AXError enumeration): one of them is reported as a
// statistic, so both backends use them.
enum class AccessibilityError : std::int32_t {
  success = 0,
  failure = -25200,
  illegalArgument = -25201,
  invalidUIElement = -25202,
  cannotComplete = -25204,  // the application did not answer in time, or is gone
  attributeUnsupported = -25205,
  actionUnsupported = -25206,
  notImplemented = -25208,
  apiDisabled = -25211,  // this process is not trusted for accessibility
  noValue = -25212,      // the attribute exists and has no value now
};

// What one request yields: a value, or why there is none.
template <class Value>
struct AccessibilityResult {
  AccessibilityResult(Value result) : value(std::move(result)) {}
  AccessibilityResult(AccessibilityError code) : error(code) {}

  std::optional<Value> value;
  AccessibilityError error = AccessibilityError::success;
};

class Accessibility {
 public:
  virtual ~Accessibility() = default;

  // Whether this process may use accessibility now.
  virtual bool isTrusted() const = 0;

  // Handles; none costs a request. Absent when the platform can make no element for the process.
  virtual std::optional<UIElement> applicationElement(ProcessIdentifier process) = 0;
  virtual std::optional<UIElement> systemWideElement() = 0;

  // Bounds each later request to the element's application. On the system-wide element: every
  // request of this process.
  virtual AccessibilityError setMessagingTimeout(const UIElement& element, float seconds) = 0;

  // The process an element belongs to. Costs no request.
  virtual AccessibilityResult<ProcessIdentifier> processIdentifier(const UIElement& element) = 0;

  // One request each, as the caller sees it; a backend may need none or several messages.
  virtual AccessibilityResult<AttributeValue> copyAttributeValue(const UIElement& element,
                                                                 std::string_view attribute) = 0;
  virtual AccessibilityResult<std::vector<std::string>> copyAttributeNames(
      const UIElement& element) = 0;
  virtual AccessibilityResult<std::int64_t> attributeValueCount(const UIElement& element,
                                                                std::string_view attribute) = 0;
  virtual AccessibilityResult<bool> isAttributeSettable(const UIElement& element,
                                                        std::string_view attribute) = 0;
  virtual AccessibilityError setAttributeValue(const UIElement& element, std::string_view attribute,
                                               const AttributeValue& value) = 0;
  virtual AccessibilityResult<std::vector<std::string>> copyActionNames(
      const UIElement& element) = 0;
  virtual AccessibilityResult<std::string> copyActionDescription(const UIElement& element,
                                                                 std::string_view action) = 0;
  virtual AccessibilityError performAction(const UIElement& element, std::string_view action) = 0;
  // The deepest element of the application at a point, in the accessibility interface's
  // coordinates.
  virtual AccessibilityResult<UIElement> copyElementAtPosition(const UIElement& application,
                                                               float x, float y) = 0;

  // In pre-order, the elements of the tree from `root` down that the search looks for: what reading
  // AXChildren and the conditions' attributes of one element after the other would find.
  // notImplemented where the backend has no quicker way; the caller then reads them itself.
  virtual AccessibilityResult<std::vector<UIElement>> findElements(const UIElement& root,
                                                                   const ElementSearch& search) = 0;

  // From here to endSample, requests are paid from one budget (SampleBudget.h; on the live desktop
  // it has a time as well). One that it does not pay for fails with cannotComplete, and nobody is
  // asked. `now` is the clock's monotonic time.
  virtual void beginSample(Seconds now) { budget_.begin(now); }
  // Whether the budget was used up.
  virtual bool endSample() { return budget_.end(); }
  // Whether the sample under way must leave the process alone, for what earlier ones have cost.
  bool isResting(ProcessIdentifier process) const { return budget_.isResting(process); }

  // Cross-process requests made since this object exists; differences tell what a sample cost.
  std::uint64_t requestCount() const { return requestCount_; }

 protected:
  SampleBudget& budget() { return budget_; }
  // False when the request must not be made.
  bool payForRequest() {
    if (!budget_.pay()) return false;
    ++requestCount_;
    return true;
  }

 private:
  SampleBudget budget_;
  std::uint64_t requestCount_ = 0;
};

}  // namespace kestro
