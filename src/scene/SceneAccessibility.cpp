#include "scene/SceneAccessibility.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "scene/AttributeValueFields.h"
#include "scene/DerivedAttributes.h"
#include "scene/HitTest.h"
#include "scene/SceneElementSearch.h"

namespace kestro {
namespace {

// The designed platform's own timeout, in force until another is set.
constexpr Seconds usualTimeout{6};
constexpr ElementIndex systemWideIndex = std::numeric_limits<ElementIndex>::max();

bool isSystemWide(const UIElement& element) {
  return elementIndex(element) == systemWideIndex;
}

}  // namespace

void SceneAccessibility::beginSample(Seconds now) {
  budget().setRequests(state_.system.requestBudget);
  Accessibility::beginSample(now);
}

std::optional<UIElement> SceneAccessibility::applicationElement(ProcessIdentifier process) {
  const SceneApplication* application = state_.runningApplication(process);
  if (!application || !application->element) return std::nullopt;
  return state_.elements[*application->element].handle;
}

std::optional<UIElement> SceneAccessibility::systemWideElement() {
  return makeSceneElementHandle(systemWideIndex, "system-wide element");
}

AccessibilityError SceneAccessibility::setMessagingTimeout(const UIElement& element,
                                                           float seconds) {
  if (!std::isfinite(seconds) || seconds < 0) return AccessibilityError::illegalArgument;
  // Zero brings the usual timeout back.
  const auto timeout = seconds > 0 ? std::optional(Seconds(seconds)) : std::nullopt;
  if (isSystemWide(element)) {
    timeoutOfAll_ = timeout;
    return AccessibilityError::success;
  }
  if (!belongsToRunningApplication(element)) return AccessibilityError::invalidUIElement;
  const std::size_t application = sceneElement(element).application;
  timeoutByApplication_.erase(application);
  if (timeout) timeoutByApplication_.emplace(application, *timeout);
  return AccessibilityError::success;
}

AccessibilityResult<ProcessIdentifier> SceneAccessibility::processIdentifier(
    const UIElement& element) {
  if (isSystemWide(element)) return AccessibilityError::illegalArgument;
  return processOf(element);
}

AccessibilityResult<AttributeValue> SceneAccessibility::copyAttributeValue(
    const UIElement& element, std::string_view attribute) {
  const auto error = beginRequest(element);
  if (error != AccessibilityError::success) return error;
  return attributeValue(sceneElement(element), attribute);
}

AccessibilityResult<std::vector<std::string>> SceneAccessibility::copyAttributeNames(
    const UIElement& element) {
  const auto error = beginRequest(element);
  if (error != AccessibilityError::success) return error;
  return attributeNames(state_, sceneElement(element));
}

AccessibilityResult<std::int64_t> SceneAccessibility::attributeValueCount(
    const UIElement& element, std::string_view attribute) {
  const auto error = beginRequest(element);
  if (error != AccessibilityError::success) return error;
  const auto read = attributeValue(sceneElement(element), attribute);
  if (!read.value) return read.error;
  const auto* list = read.value->get<AttributeValue::List>();
  if (!list) return AccessibilityError::illegalArgument;
  return static_cast<std::int64_t>(list->size());
}

AccessibilityResult<bool> SceneAccessibility::isAttributeSettable(const UIElement& element,
                                                                  std::string_view attribute) {
  const auto error = beginRequest(element);
  if (error != AccessibilityError::success) return error;
  const SceneElement& target = sceneElement(element);
  if (target.isSettable(attribute)) return true;
  if (!hasAttribute(state_, target, attribute)) return AccessibilityError::attributeUnsupported;
  return false;
}

AccessibilityError SceneAccessibility::setAttributeValue(const UIElement& element,
                                                         std::string_view attribute,
                                                         const AttributeValue& value) {
  const auto error = beginRequest(element);
  if (error != AccessibilityError::success) return error;
  // The other application sees the request whether or not it accepts the value.
  if (transcript_.isActive()) {
    transcript_.record("attribute", {{"element", element.reference().description()},
                                     {"attribute", attribute},
                                     {"value", transcriptValue(value)}});
  }
  SceneElement& target = sceneElement(element);
  if (!target.isSettable(attribute)) return AccessibilityError::attributeUnsupported;
  target.setAttribute(attribute, {value});
  return AccessibilityError::success;
}

AccessibilityResult<std::vector<std::string>> SceneAccessibility::copyActionNames(
    const UIElement& element) {
  const auto error = beginRequest(element);
  if (error != AccessibilityError::success) return error;
  std::vector<std::string> names;
  if (const auto& actions = sceneElement(element).contents.actions) {
    std::ranges::transform(*actions, std::back_inserter(names), &SceneAction::name);
  }
  return names;
}

AccessibilityResult<std::string> SceneAccessibility::copyActionDescription(
    const UIElement& element, std::string_view action) {
  const auto error = beginRequest(element);
  if (error != AccessibilityError::success) return error;
  const SceneAction* found = sceneElement(element).action(action);
  if (!found) return AccessibilityError::actionUnsupported;
  return found->description;
}

AccessibilityError SceneAccessibility::performAction(const UIElement& element,
                                                     std::string_view action) {
  const auto error = beginRequest(element);
  if (error != AccessibilityError::success) return error;
  return sceneElement(element).action(action) ? AccessibilityError::success
                                              : AccessibilityError::actionUnsupported;
}

AccessibilityResult<UIElement> SceneAccessibility::copyElementAtPosition(
    const UIElement& application, float x, float y) {
  const auto error = beginRequest(application);
  if (error != AccessibilityError::success) return error;
  const SceneElement& root = sceneElement(application);
  if (root.contents.hitTest) {
    const auto scripted = answer(root, *root.contents.hitTest);
    if (!scripted.value) return scripted.error;
    const auto* element = scripted.value->get<UIElement>();
    return element ? AccessibilityResult(*element) : AccessibilityError::noValue;
  }
  const auto found = elementAtPoint(state_, elementIndex(application), {x, y});
  if (!found) return AccessibilityError::noValue;
  return state_.elements[*found].handle;
}

AccessibilityResult<std::vector<UIElement>> SceneAccessibility::findElements(
    const UIElement& root, const ElementSearch& search) {
  const auto error = beginRequest(root);
  if (error != AccessibilityError::success) return error;
  const Seconds patience = timeout(sceneElement(root));
  SceneElementSearch elementSearch(state_, search, patience);
  elementSearch.visit(elementIndex(root), search.maxDepth);
  // Whatever hangs, it is one request to one application.
  clock_.advanceBy(std::min(elementSearch.duration(), patience));
  return elementSearch.found();
}

void SceneAccessibility::beginNextLife() {
  budget() = SampleBudget();
  timeoutOfAll_.reset();
  timeoutByApplication_.clear();
}

AccessibilityError SceneAccessibility::beginRequest(const UIElement& element) {
  if (!budget().admits(processOf(element)) || !payForRequest()) {
    return AccessibilityError::cannotComplete;
  }
  if (!isTrusted()) return AccessibilityError::apiDisabled;
  if (isSystemWide(element)) return AccessibilityError::attributeUnsupported;
  if (!belongsToRunningApplication(element)) return AccessibilityError::invalidUIElement;
  return AccessibilityError::success;
}

// Of the system-wide element: none.
ProcessIdentifier SceneAccessibility::processOf(const UIElement& element) const {
  if (isSystemWide(element)) return 0;
  return state_.applications[sceneElement(element).application].description.processIdentifier;
}

SceneElement& SceneAccessibility::sceneElement(const UIElement& element) const {
  return state_.elements[elementIndex(element)];
}

bool SceneAccessibility::belongsToRunningApplication(const UIElement& element) const {
  return state_.applications[sceneElement(element).application].isRunning;
}

Seconds SceneAccessibility::timeout(const SceneElement& element) const {
  const auto found = timeoutByApplication_.find(element.application);
  if (found != timeoutByApplication_.end()) return found->second;
  return timeoutOfAll_.value_or(usualTimeout);
}

AccessibilityResult<AttributeValue> SceneAccessibility::attributeValue(const SceneElement& element,
                                                                       std::string_view attribute) {
  if (const SceneValue* given = element.attribute(attribute)) return answer(element, *given);
  if (auto derived = derivedAttribute(state_, element, attribute)) return *std::move(derived);
  return AccessibilityError::attributeUnsupported;
}

AccessibilityResult<AttributeValue> SceneAccessibility::answer(const SceneElement& element,
                                                               const SceneValue& value) {
  const Seconds patience = timeout(element);
  clock_.advanceBy(std::min(value.hang, patience));
  if (value.hang > patience) return AccessibilityError::cannotComplete;
  return value.result;
}

}  // namespace kestro
