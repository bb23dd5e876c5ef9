// The accessibility interface of a scripted desktop. Requests that hang let virtual time pass. Main
// thread only; state, clock and transcript must outlive it.
#pragma once

#include <map>
#include <optional>
#include <string_view>

#include "platform/Accessibility.h"
#include "platform/Transcript.h"
#include "scene/SceneClock.h"
#include "scene/SceneState.h"

namespace kestro {

class SceneAccessibility final : public Accessibility {
 public:
  SceneAccessibility(SceneState& state, SceneClock& clock, Transcript& transcript)
      : state_(state), clock_(clock), transcript_(transcript) {}

  // A scene may have a smaller budget; its time is virtual and has no part in that.
  void beginSample(Seconds now) override;
  bool isTrusted() const override { return state_.system.accessibilityTrusted; }
  std::optional<UIElement> applicationElement(ProcessIdentifier process) override;
  std::optional<UIElement> systemWideElement() override;
  AccessibilityError setMessagingTimeout(const UIElement& element, float seconds) override;
  AccessibilityResult<ProcessIdentifier> processIdentifier(const UIElement& element) override;
  AccessibilityResult<AttributeValue> copyAttributeValue(const UIElement& element,
                                                         std::string_view attribute) override;
  AccessibilityResult<std::vector<std::string>> copyAttributeNames(
      const UIElement& element) override;
  AccessibilityResult<std::int64_t> attributeValueCount(const UIElement& element,
                                                        std::string_view attribute) override;
  AccessibilityResult<bool> isAttributeSettable(const UIElement& element,
                                                std::string_view attribute) override;
  AccessibilityError setAttributeValue(const UIElement& element, std::string_view attribute,
                                       const AttributeValue& value) override;
  AccessibilityResult<std::vector<std::string>> copyActionNames(const UIElement& element) override;
  AccessibilityResult<std::string> copyActionDescription(const UIElement& element,
                                                         std::string_view action) override;
  AccessibilityError performAction(const UIElement& element, std::string_view action) override;
  AccessibilityResult<UIElement> copyElementAtPosition(const UIElement& application, float x,
                                                       float y) override;
  AccessibilityResult<std::vector<UIElement>> findElements(const UIElement& root,
                                                           const ElementSearch& search) override;

  // Timeouts belong to a process: the next one starts with the platform's own.
  void beginNextLife();

 private:
  // Pays for a request; why it fails before anything of the element is looked at, else success.
  AccessibilityError beginRequest(const UIElement& element);
  ProcessIdentifier processOf(const UIElement& element) const;
  SceneElement& sceneElement(const UIElement& element) const;
  bool belongsToRunningApplication(const UIElement& element) const;
  Seconds timeout(const SceneElement& element) const;
  AccessibilityResult<AttributeValue> attributeValue(const SceneElement& element,
                                                     std::string_view attribute);
  // Lets the time pass that the answer takes.
  AccessibilityResult<AttributeValue> answer(const SceneElement& element, const SceneValue& value);

  SceneState& state_;
  SceneClock& clock_;
  Transcript& transcript_;
  std::optional<Seconds> timeoutOfAll_;
  std::map<std::size_t, Seconds> timeoutByApplication_;  // by place in SceneState::applications
};

}  // namespace kestro
