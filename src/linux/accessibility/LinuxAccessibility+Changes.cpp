// What the accessibility interface can change in other applications: attributes and actions.
#include <algorithm>

#include "linux/accessibility/AtspiMessages.h"
#include "linux/accessibility/LinuxAccessibility.h"

namespace kestro {
namespace {

using Kind = AtspiElement::Kind;

struct ActionRow {
  std::string_view atspiName;
  std::string_view axName;
};

constexpr ActionRow actionRows[]{
    {"activate", "AXPress"},     {"click", "AXPress"},
    {"do default", "AXPress"},   {"doDefault", "AXPress"},
    {"jump", "AXPress"},         {"press", "AXPress"},
    {"Press", "AXPress"},        {"toggle", "AXPress"},
    {"Toggle", "AXPress"},       {"open", "AXPress"},
    {"check", "AXPress"},        {"uncheck", "AXPress"},
    {"select", "AXPick"},        {"switch", "AXPress"},
    {"menu", "AXShowMenu"},      {"showContextMenu", "AXShowMenu"},
    {"ShowMenu", "AXShowMenu"},  {"Increase", "AXIncrement"},
    {"Decrease", "AXDecrement"},
};

std::string actionName(const std::string& atspiName) {
  const auto* row = std::ranges::find(actionRows, atspiName, &ActionRow::atspiName);
  return row == std::end(actionRows) ? atspiName : std::string(row->axName);
}

// What a person would take for "on": true, a number that is not zero, or a text that begins with
// one.
bool isOn(const AttributeValue& value) {
  if (const auto* flag = value.get<bool>()) return *flag;
  if (const auto* whole = value.get<std::int64_t>()) return *whole != 0;
  if (const auto* real = value.get<double>()) return *real != 0;
  const auto* text = value.get<std::string>();
  return text && !text->empty() && text->front() >= '1' && text->front() <= '9';
}

std::optional<double> numberOf(const AttributeValue& value) {
  if (const auto* whole = value.get<std::int64_t>()) return static_cast<double>(*whole);
  if (const auto* real = value.get<double>()) return *real;
  return std::nullopt;
}

}  // namespace

AccessibilityError LinuxAccessibility::setAttributeValue(const UIElement& element,
                                                         std::string_view attribute,
                                                         const AttributeValue& value) {
  if (!mayAsk(element)) return AccessibilityError::cannotComplete;
  const auto& known = atspiElementOf(element);
  if (known.kind() == Kind::application) {
    const bool isSwitch =
        attribute == "AXEnhancedUserInterface" || attribute == "AXManualAccessibility";
    return isSwitch ? enhance(known.process(), isOn(value))
                    : AccessibilityError::attributeUnsupported;
  }
  if (known.kind() != Kind::object) return AccessibilityError::attributeUnsupported;
  if (attribute == "AXFocused") {
    return isOn(value) ? grabFocus(known.object()) : AccessibilityError::illegalArgument;
  }
  if (attribute != "AXValue") return AccessibilityError::attributeUnsupported;
  if (const auto* text = value.get<std::string>()) return setText(known.object(), *text);
  const auto number = numberOf(value);
  return number ? setNumber(known.object(), *number) : AccessibilityError::illegalArgument;
}

AccessibilityError LinuxAccessibility::booleanRequest(const MessagePointer& request) {
  const auto done = booleanOf(connection_.call(request));
  if (!done.value) return done.error;
  return *done.value ? AccessibilityError::success : AccessibilityError::failure;
}

AccessibilityError LinuxAccessibility::setText(const AtspiObject& object, const std::string& text) {
  const auto request =
      connection_.request(object, "org.a11y.atspi.EditableText", "SetTextContents");
  if (request && sd_bus_message_append(request.get(), "s", text.c_str()) < 0) {
    return AccessibilityError::illegalArgument;  // not UTF-8
  }
  return booleanRequest(request);
}

AccessibilityError LinuxAccessibility::setNumber(const AtspiObject& object, double number) {
  const auto request = connection_.request(object, "org.freedesktop.DBus.Properties", "Set");
  if (request) {
    sd_bus_message_append(request.get(), "ssv", "org.a11y.atspi.Value", "CurrentValue", "d",
                          number);
  }
  return connection_.call(request).error;
}

AccessibilityError LinuxAccessibility::grabFocus(const AtspiObject& object) {
  return booleanRequest(connection_.request(object, "org.a11y.atspi.Component", "GrabFocus"));
}

AccessibilityResult<std::vector<LinuxAccessibility::Action>> LinuxAccessibility::actions(
    const AtspiObject& object) {
  const auto reply =
      connection_.call(connection_.request(object, "org.a11y.atspi.Action", "GetActions"));
  if (!reply.message) return reply.error;
  std::vector<Action> actions;
  sd_bus_message* message = reply.message.get();
  if (sd_bus_message_enter_container(message, 'a', "(sss)") <= 0) {
    return AccessibilityError::failure;
  }
  const char* name = nullptr;
  const char* description = nullptr;
  const char* keys = nullptr;
  while (sd_bus_message_read(message, "(sss)", &name, &description, &keys) > 0) {
    actions.push_back({actionName(name), description});
  }
  return actions;
}

AccessibilityResult<std::vector<std::string>> LinuxAccessibility::copyActionNames(
    const UIElement& element) {
  if (!mayAsk(element)) return AccessibilityError::cannotComplete;
  std::vector<std::string> names;
  if (atspiElementOf(element).kind() != Kind::object) return names;
  const auto known = actions(atspiElementOf(element).object());
  // An element without the interface has no actions, which is no error on the designed platform.
  if (!known.value && known.error == AccessibilityError::attributeUnsupported) return names;
  if (!known.value) return known.error;
  for (const Action& action : *known.value)
    names.push_back(action.name);
  return names;
}

AccessibilityResult<std::string> LinuxAccessibility::copyActionDescription(
    const UIElement& element, std::string_view action) {
  if (!mayAsk(element)) return AccessibilityError::cannotComplete;
  if (atspiElementOf(element).kind() != Kind::object) return AccessibilityError::actionUnsupported;
  const auto known = actions(atspiElementOf(element).object());
  if (!known.value) return known.error;
  const auto found = std::ranges::find(*known.value, action, &Action::name);
  if (found == known.value->end()) return AccessibilityError::actionUnsupported;
  return found->description;
}

AccessibilityError LinuxAccessibility::performAction(const UIElement& element,
                                                     std::string_view action) {
  if (!mayAsk(element)) return AccessibilityError::cannotComplete;
  if (atspiElementOf(element).kind() != Kind::object) return AccessibilityError::actionUnsupported;
  const AtspiObject& object = atspiElementOf(element).object();
  const auto known = actions(object);
  if (!known.value) return known.error;
  const auto found = std::ranges::find(*known.value, action, &Action::name);
  if (found == known.value->end()) return AccessibilityError::actionUnsupported;
  const auto request = connection_.request(object, "org.a11y.atspi.Action", "DoAction");
  const auto index = static_cast<std::int32_t>(found - known.value->begin());
  if (request) sd_bus_message_append(request.get(), "i", index);
  return booleanRequest(request);
}

}  // namespace kestro
