#include "extractors/AccessibilityElement.h"

#include <algorithm>

#include "accessibility/UIElementUtilities.h"
#include "platform/Process.h"
#include "product/Activity.h"

namespace kestro {

AccessibilityElement::AccessibilityElement(Process& process, UIElement handle)
    : process_(&process), handle_(std::move(handle)) {}

const UIElementUtilities& AccessibilityElement::utilities() const {
  return process_->shared<UIElementUtilities>();
}

std::optional<AttributeValue> AccessibilityElement::attributeValue(std::string_view name) const {
  return utilities().valueOfAttribute(name, handle_);
}

AccessibilityElements AccessibilityElement::elementsAttribute(std::string_view name) const {
  const auto value = attributeValue(name);
  const auto* members = value ? value->get<AttributeValue::List>() : nullptr;
  if (!members) return {};
  List elements;
  for (const AttributeValue& member : *members) {
    const auto* element = member.get<UIElement>();
    if (!element) return {};
    elements.emplace_back(*process_, *element);
  }
  return elements;
}

std::optional<std::string> AccessibilityElement::stringAttribute(std::string_view name) const {
  return utilities().stringValueOfAttribute(name, handle_);
}

std::optional<std::string> AccessibilityElement::nonEmptyString(std::string_view name) const {
  auto text = stringAttribute(name);
  return text && !text->empty() ? text : std::nullopt;
}

bool AccessibilityElement::hasDOMClass(std::string_view name) const {
  const auto classes = stringListAttribute(attribute::domClassList);
  return classes && std::ranges::find(*classes, name) != classes->end();
}

std::optional<bool> AccessibilityElement::booleanAttribute(std::string_view name) const {
  return utilities().booleanValueOfAttribute(name, handle_);
}

std::optional<std::vector<std::string>> AccessibilityElement::stringListAttribute(
    std::string_view name) const {
  const auto value = attributeValue(name);
  const auto* members = value ? value->get<AttributeValue::List>() : nullptr;
  if (!members) return std::nullopt;
  std::vector<std::string> texts;
  for (const AttributeValue& member : *members) {
    const auto* text = member.get<std::string>();
    if (!text) return std::nullopt;
    texts.push_back(*text);
  }
  return texts;
}

std::optional<std::string> AccessibilityElement::urlString() const {
  const auto url = attributeValue(attribute::url);
  if (!url) return std::nullopt;
  if (const auto* text = url->get<std::string>()) return *text;
  if (const auto* address = url->get<WebAddress>()) return address->absoluteString;
  return std::nullopt;
}

std::optional<AccessibilityElement> AccessibilityElement::elementAttribute(
    std::string_view name) const {
  return asElement(attributeValue(name));
}

std::optional<AccessibilityElement> AccessibilityElement::asElement(
    const std::optional<AttributeValue>& value) const {
  const auto* element = value ? value->get<UIElement>() : nullptr;
  return element ? std::optional<AccessibilityElement>(std::in_place, *process_, *element)
                 : std::nullopt;
}

void AccessibilityElement::setStringValue(std::string_view text, std::string_view attribute) const {
  utilities().setStringValue(text, attribute, handle_);
}

void AccessibilityElement::setNumberValue(const AttributeValue& value,
                                          std::string_view attribute) const {
  utilities().setNumberValue(value, attribute, handle_);
}

AccessibilityElements accessibilityWindows(Process& process, const Activity& activity) {
  AccessibilityElements windows;
  if (!activity.accessibilityWindows) return windows;
  for (const UIElement& window : *activity.accessibilityWindows) {
    windows.emplace_back(process, window);
  }
  return windows;
}

}  // namespace kestro
