// The accessibility interface over AT-SPI. Owns the connection to the accessibility bus and what is
// read through it. Main thread only.
#pragma once

#include <set>
#include <string>
#include <utility>

#include "linux/accessibility/AtspiSearch.h"
#include "platform/Accessibility.h"

namespace kestro {

class LinuxAccessibility final : public Accessibility {
 public:
  LinuxAccessibility(X11Desktop& desktop, ApplicationIdentity& identity,
                     SampleGeneration& generation, SystemLog& log);

  // Besides its requests, a sample has half a second of time.
  void beginSample(Seconds now) override;
  bool endSample() override;
  // Whether the accessibility bus can be used.
  bool isTrusted() const override;
  std::optional<UIElement> applicationElement(ProcessIdentifier process) override;
  std::optional<UIElement> systemWideElement() override;
  // There is one timeout for all: it is taken from the system-wide element only.
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

 private:
  struct Action {
    std::string name;
    std::string description;
  };

  // Whether the budget of the sample allows a question to the application of the element.
  bool mayAsk(const UIElement& element);
  bool pay();
  AccessibilityResult<AttributeValue> applicationValue(ProcessIdentifier process,
                                                       std::string_view attribute);
  AccessibilityResult<AttributeValue> mainWindow(ProcessIdentifier process);
  AccessibilityResult<AttributeValue> focusedElement(ProcessIdentifier process);
  AccessibilityResult<AttributeValue> menuBar(ProcessIdentifier process);
  AccessibilityResult<AttributeValue> windowList(ProcessIdentifier process);
  AccessibilityResult<AttributeValue> rootText(
      ProcessIdentifier process,
      AccessibilityResult<std::string> (AtspiReader::*read)(const AtspiObject&));
  AccessibilityResult<AttributeValue> isEnhanced(ProcessIdentifier process);
  AccessibilityError enhance(ProcessIdentifier process, bool isOn);

  AccessibilityError setText(const AtspiObject& object, const std::string& text);
  AccessibilityError setNumber(const AtspiObject& object, double number);
  AccessibilityError grabFocus(const AtspiObject& object);
  AccessibilityError booleanRequest(const MessagePointer& request);
  AccessibilityResult<std::vector<Action>> actions(const AtspiObject& object);
  std::optional<AtspiObject> windowAt(ProcessIdentifier process, Point rootPoint);

  Patience patience_;
  mutable AccessibilityStatus status_;
  mutable AtspiConnection connection_;
  AtspiReader reader_;
  AtspiApplications applications_;
  AtspiWindows windows_;
  ElementAttributes attributes_;
  AtspiSearch search_;
  // Unique bus names, with the number of the connection on which they are unique.
  std::set<std::pair<std::uint64_t, std::string>> enhanced_;
};

}  // namespace kestro
