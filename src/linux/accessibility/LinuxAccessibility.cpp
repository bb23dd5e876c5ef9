#include "linux/accessibility/LinuxAccessibility.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "linux/windows/ScreenCoordinates.h"

namespace kestro {
namespace {

using Kind = AtspiElement::Kind;

constexpr std::chrono::milliseconds longestSample{500};

bool isReadableObject(const AtspiElement& element) {
  return element.kind() == Kind::object || element.kind() == Kind::pageScrollArea;
}

constexpr std::array applicationAttributes{"AXRole",
                                           "AXTitle",
                                           "AXChildren",
                                           "AXWindows",
                                           "AXMainWindow",
                                           "AXFocusedWindow",
                                           "AXFrontmost",
                                           "AXFocusedUIElement",
                                           "AXMenuBar",
                                           "AXRoleDescription",
                                           "AXEnhancedUserInterface"};

bool isEnhancementSwitch(std::string_view attribute) {
  return attribute == "AXEnhancedUserInterface" || attribute == "AXManualAccessibility";
}

}  // namespace

LinuxAccessibility::LinuxAccessibility(X11Desktop& desktop, ApplicationIdentity& identity,
                                       SampleGeneration& generation, SystemLog& log)
    : status_(patience_, log),
      connection_(status_, patience_, log, [this] { return pay(); }),
      reader_(connection_, generation),
      applications_(connection_, reader_, generation),
      windows_(applications_, reader_, desktop, generation),
      attributes_(windows_, applications_, reader_, identity),
      search_(attributes_, reader_) {
  // Applications look at this when they start.
  status_.enable();
}

void LinuxAccessibility::beginSample(Seconds now) {
  Accessibility::beginSample(now);
  patience_.setDeadline(Patience::Clock::now() + longestSample);
}

bool LinuxAccessibility::endSample() {
  patience_.setDeadline(std::nullopt);
  return Accessibility::endSample();
}

bool LinuxAccessibility::pay() {
  if (patience_.isOver()) budget().useUp();
  return payForRequest();
}

bool LinuxAccessibility::mayAsk(const UIElement& element) {
  return budget().admits(atspiElementOf(element).process());
}

bool LinuxAccessibility::isTrusted() const {
  return connection_.isConnected();
}

std::optional<UIElement> LinuxAccessibility::applicationElement(ProcessIdentifier process) {
  if (process <= 0) return std::nullopt;
  return makeElement(Kind::application, process);
}

std::optional<UIElement> LinuxAccessibility::systemWideElement() {
  return makeElement(Kind::systemWide, 0);
}

AccessibilityError LinuxAccessibility::setMessagingTimeout(const UIElement& element,
                                                           float seconds) {
  if (atspiElementOf(element).kind() != Kind::systemWide) return AccessibilityError::notImplemented;
  constexpr float shortest = 0.01F;
  constexpr float longest = 60;
  // Zero stands for the platform's own choice.
  const float timeout = seconds == 0 ? 2 : seconds;
  if (!(timeout > 0)) return AccessibilityError::illegalArgument;
  patience_.setTimeout(std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::duration<float>(std::clamp(timeout, shortest, longest))));
  return AccessibilityError::success;
}

AccessibilityResult<ProcessIdentifier> LinuxAccessibility::processIdentifier(
    const UIElement& element) {
  const auto& known = atspiElementOf(element);
  if (known.kind() == Kind::systemWide) return AccessibilityError::illegalArgument;
  return known.process();
}

AccessibilityResult<AttributeValue> LinuxAccessibility::copyAttributeValue(
    const UIElement& element, std::string_view attribute) {
  if (!mayAsk(element)) return AccessibilityError::cannotComplete;
  const auto& known = atspiElementOf(element);
  if (isReadableObject(known)) return attributes_.value(known, attribute);
  if (known.kind() == Kind::application) return applicationValue(known.process(), attribute);
  return AccessibilityError::attributeUnsupported;
}

AccessibilityResult<std::vector<std::string>> LinuxAccessibility::copyAttributeNames(
    const UIElement& element) {
  if (!mayAsk(element)) return AccessibilityError::cannotComplete;
  const auto& known = atspiElementOf(element);
  if (isReadableObject(known)) return attributes_.names(known);
  if (known.kind() != Kind::application) return AccessibilityError::illegalArgument;
  return std::vector<std::string>(applicationAttributes.begin(), applicationAttributes.end());
}

AccessibilityResult<std::int64_t> LinuxAccessibility::attributeValueCount(
    const UIElement& element, std::string_view attribute) {
  if (!mayAsk(element)) return AccessibilityError::cannotComplete;
  const auto& known = atspiElementOf(element);
  if (isReadableObject(known)) return attributes_.count(known, attribute);
  const auto value = copyAttributeValue(element, attribute);
  if (!value.value) return value.error;
  const auto* list = value.value->get<AttributeValue::List>();
  if (!list) return AccessibilityError::illegalArgument;
  return static_cast<std::int64_t>(list->size());
}

AccessibilityResult<AttributeValue> LinuxAccessibility::applicationValue(
    ProcessIdentifier process, std::string_view attribute) {
  if (attribute == "AXRole") return AttributeValue("AXApplication");
  if (attribute == "AXMainWindow" || attribute == "AXFocusedWindow") return mainWindow(process);
  if (attribute == "AXWindows" || attribute == "AXChildren") return windowList(process);
  if (attribute == "AXEnhancedUserInterface") return isEnhanced(process);
  if (attribute == "AXFocusedUIElement") return focusedElement(process);
  if (attribute == "AXMenuBar") return menuBar(process);
  if (attribute == "AXTitle") return rootText(process, &AtspiReader::name);
  if (attribute == "AXRoleDescription") return rootText(process, &AtspiReader::localizedRoleName);
  if (attribute == "AXFrontmost") {
    const X11Window* active = windows_.snapshot().active();
    return AttributeValue(active && active->process == process);
  }
  return AccessibilityError::attributeUnsupported;
}

AccessibilityResult<AttributeValue> LinuxAccessibility::mainWindow(ProcessIdentifier process) {
  const auto window = windows_.mainWindow(process);
  if (!window.value) return window.error;
  return AttributeValue(makeObjectElement(process, *window.value));
}

AccessibilityResult<AttributeValue> LinuxAccessibility::windowList(ProcessIdentifier process) {
  const auto windows = windows_.windows(process);
  if (!windows.value) return windows.error;
  AttributeValue::List list;
  for (const AtspiObject& window : *windows.value) {
    list.emplace_back(makeObjectElement(process, window));
  }
  return AttributeValue(std::move(list));
}

AccessibilityResult<AttributeValue> LinuxAccessibility::focusedElement(ProcessIdentifier process) {
  const auto window = windows_.mainWindow(process);
  if (!window.value) return window.error;
  const auto focused = reader_.matches(*window.value, {{AtspiState::focused}, {}, {}}, 1);
  if (!focused.value) return focused.error;
  if (focused.value->empty()) return AccessibilityError::noValue;
  return AttributeValue(makeObjectElement(process, focused.value->front()));
}

// The designed platform has one menu bar an application; here it is a child of the window, or of
// the window's first container.
AccessibilityResult<AttributeValue> LinuxAccessibility::menuBar(ProcessIdentifier process) {
  const auto window = windows_.mainWindow(process);
  if (!window.value) return window.error;
  std::vector<AtspiObject> level{*window.value};
  for (int depth = 0; depth < 2 && !level.empty(); ++depth) {
    const auto children = reader_.children(level.front());
    if (!children.value) return children.error;
    level = *children.value;
    reader_.prefetchRoles(level);
    const auto found = std::ranges::find_if(level, [&](const AtspiObject& child) {
      return reader_.role(child).value == AtspiRole::menuBar;
    });
    if (found != level.end()) return AttributeValue(makeObjectElement(process, *found));
  }
  return AccessibilityError::noValue;
}

AccessibilityResult<AttributeValue> LinuxAccessibility::rootText(
    ProcessIdentifier process,
    AccessibilityResult<std::string> (AtspiReader::*read)(const AtspiObject&)) {
  const auto root = applications_.root(process);
  if (!root.value) return root.error;
  const auto text = (reader_.*read)(*root.value);
  if (!text.value) return text.error;
  return AttributeValue(*text.value);
}

AccessibilityResult<AttributeValue> LinuxAccessibility::isEnhanced(ProcessIdentifier process) {
  const auto root = applications_.root(process);
  if (!root.value) return root.error;
  return AttributeValue(enhanced_.contains({connection_.connectionNumber(), root.value->busName}) &&
                        status_.isEnabled());
}

// Applications make their trees when the session says that something reads them; Chromium when,
// besides, its windows are asked for attributes. There is no way back, and nobody asks for one.
AccessibilityError LinuxAccessibility::enhance(ProcessIdentifier process, bool isOn) {
  if (!isOn) return AccessibilityError::success;
  const auto root = applications_.root(process);
  if (!root.value) return root.error;
  status_.enable();
  const auto attributes = reader_.attributes(*root.value);
  if (!attributes.value) return attributes.error;
  if (enhanced_.size() > 256) enhanced_.clear();
  enhanced_.emplace(connection_.connectionNumber(), root.value->busName);
  return AccessibilityError::success;
}

AccessibilityResult<UIElement> LinuxAccessibility::copyElementAtPosition(
    const UIElement& application, float x, float y) {
  if (!mayAsk(application)) return AccessibilityError::cannotComplete;
  const auto& known = atspiElementOf(application);
  if (known.kind() == Kind::systemWide) return AccessibilityError::notImplemented;
  const Point point = rootPoint({x, y}, windows_.snapshot().monitors);
  const auto window = windowAt(known.process(), point);
  if (!window) return AccessibilityError::noValue;
  const Point offset =
      attributes_.windowOffset(AtspiElement(Kind::object, known.process(), *window));
  const Point inside{point.x - offset.x, point.y - offset.y};
  // Web content answers with its deepest element at once, other toolkits with the next level.
  constexpr int deepest = 100;
  AtspiObject found = *window;
  for (int depth = 0; depth < deepest; ++depth) {
    const auto next = reader_.childAtPoint(found, inside);
    if (!next.value && depth == 0 && next.error != AccessibilityError::noValue) return next.error;
    if (!next.value || *next.value == found) break;
    found = *next.value;
  }
  return makeObjectElement(known.process(), found);
}

AccessibilityResult<std::vector<UIElement>> LinuxAccessibility::findElements(
    const UIElement& root, const ElementSearch& search) {
  if (!mayAsk(root)) return AccessibilityError::cannotComplete;
  const auto& known = atspiElementOf(root);
  if (!isReadableObject(known)) return AccessibilityError::notImplemented;
  return search_.find(known, search);
}

std::optional<AtspiObject> LinuxAccessibility::windowAt(ProcessIdentifier process,
                                                        Point rootPoint) {
  const auto contains = [&](const Rect& bounds) {
    return rootPoint.x >= bounds.origin.x && rootPoint.y >= bounds.origin.y &&
           rootPoint.x < bounds.origin.x + bounds.size.width &&
           rootPoint.y < bounds.origin.y + bounds.size.height;
  };
  const auto main = windows_.mainWindow(process);
  if (!main.value) return std::nullopt;
  const auto window = windows_.windowOf(*main.value, process);
  if (window && contains(window->bounds)) return *main.value;
  const auto all = windows_.windows(process);
  if (!all.value) return std::nullopt;
  for (const AtspiObject& object : *all.value) {
    const auto other = windows_.windowOf(object, process);
    if (other && contains(other->bounds)) return object;
  }
  return std::nullopt;
}

AccessibilityResult<bool> LinuxAccessibility::isAttributeSettable(const UIElement& element,
                                                                  std::string_view attribute) {
  if (!mayAsk(element)) return AccessibilityError::cannotComplete;
  const auto& known = atspiElementOf(element);
  if (known.kind() == Kind::application) return isEnhancementSwitch(attribute);
  if (known.kind() != Kind::object) return false;
  if (attribute != "AXValue" && attribute != "AXFocused") return false;
  const auto states = reader_.states(known.object());
  if (!states.value) return states.error;
  if (attribute == "AXFocused") return states.value->has(AtspiState::focusable);
  if (states.value->has(AtspiState::editable)) return true;
  const auto interfaces = reader_.interfaces(known.object());
  return interfaces.value &&
         std::ranges::find(*interfaces.value, "org.a11y.atspi.Value") != interfaces.value->end();
}

}  // namespace kestro
