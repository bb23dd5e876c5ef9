#include "accessibility/UIElementUtilities.h"

#include "accessibility/AttributeValueText.h"
#include "platform/Process.h"
#include "platform/Workspace.h"

namespace kestro {
namespace {

template <class Value>
std::optional<Value> valueOf(AccessibilityResult<Value> result) {
  return std::move(result.value);
}

// The platform's own test: the edges at the origin belong to the rectangle, the other two do not.
bool contains(const Rect& frame, Point point) {
  return point.x >= frame.origin.x && point.x < frame.origin.x + frame.size.width &&
         point.y >= frame.origin.y && point.y < frame.origin.y + frame.size.height;
}

}  // namespace

UIElementUtilities::UIElementUtilities(Process& process)
    : process_(process), accessibility_(process.platform().accessibility) {}

ProcessIdentifier UIElementUtilities::processIdentifierOfUIElement(const UIElement& element) const {
  return accessibility_.processIdentifier(element).value.value_or(0);
}

std::optional<std::vector<std::string>> UIElementUtilities::attributeNamesOfUIElement(
    const UIElement& element) const {
  return valueOf(accessibility_.copyAttributeNames(element));
}

std::optional<std::vector<std::string>> UIElementUtilities::actionNamesOfUIElement(
    const UIElement& element) const {
  return valueOf(accessibility_.copyActionNames(element));
}

std::optional<std::string> UIElementUtilities::descriptionOfAction(std::string_view action,
                                                                   const UIElement& element) const {
  return valueOf(accessibility_.copyActionDescription(element, action));
}

void UIElementUtilities::performAction(std::string_view action, const UIElement& element) const {
  accessibility_.performAction(element, action);
}

std::optional<AttributeValue> UIElementUtilities::valueOfAttribute(std::string_view attribute,
                                                                   const UIElement& element) const {
  return valueOf(accessibility_.copyAttributeValue(element, attribute));
}

std::optional<std::string> UIElementUtilities::stringValueOfAttribute(
    std::string_view attribute, const UIElement& element) const {
  const auto value = valueOfAttribute(attribute, element);
  const auto* text = value ? value->get<std::string>() : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

std::optional<double> UIElementUtilities::numberValueOfAttribute(std::string_view attribute,
                                                                 const UIElement& element) const {
  const auto value = valueOfAttribute(attribute, element);
  if (!value) return std::nullopt;
  if (const auto* flag = value->get<bool>()) return *flag ? 1 : 0;
  if (const auto* whole = value->get<std::int64_t>()) return static_cast<double>(*whole);
  if (const auto* real = value->get<double>()) return *real;
  return std::nullopt;
}

std::optional<bool> UIElementUtilities::booleanValueOfAttribute(std::string_view attribute,
                                                                const UIElement& element) const {
  const auto number = numberValueOfAttribute(attribute, element);
  return number ? std::optional(*number != 0) : std::nullopt;
}

bool UIElementUtilities::canSetAttribute(std::string_view attribute,
                                         const UIElement& element) const {
  return accessibility_.isAttributeSettable(element, attribute).value.value_or(false);
}

void UIElementUtilities::setStringValue(std::string_view text,
                                        std::optional<std::string_view> attribute,
                                        const UIElement& element) const {
  if (!attribute) return;
  const auto current = valueOfAttribute(*attribute, element);
  if (!current) return;
  accessibility_.setAttributeValue(element, *attribute, valueFromText(text, *current));
}

void UIElementUtilities::setNumberValue(const AttributeValue& value, std::string_view attribute,
                                        const UIElement& element) const {
  accessibility_.setAttributeValue(element, attribute, value);
}

std::optional<UIElement> UIElementUtilities::parentOfUIElement(const UIElement& element) const {
  const auto value = valueOfAttribute("AXParent", element);
  const auto* parent = value ? value->get<UIElement>() : nullptr;
  return parent ? std::optional(*parent) : std::nullopt;
}

std::optional<std::string> UIElementUtilities::roleOfUIElement(const UIElement& element) const {
  return stringValueOfAttribute("AXRole", element);
}

std::optional<std::string> UIElementUtilities::titleOfUIElement(const UIElement& element) const {
  return stringValueOfAttribute("AXTitle", element);
}

bool UIElementUtilities::isApplicationUIElement(const UIElement& element) const {
  return roleOfUIElement(element) == "AXApplication";
}

Point UIElementUtilities::carbonScreenPointFromCocoaScreenPoint(Point point) const {
  Point converted;
  for (const Rect& frame : process_.platform().workspace.screens()) {
    if (contains(frame, point)) converted = {point.x, frame.size.height - point.y - 1};
  }
  return converted;
}

Rect UIElementUtilities::flippedScreenBounds(Rect bounds) const {
  const auto screens = process_.platform().workspace.screens();
  const double top = screens.empty() ? 0 : screens.front().origin.y + screens.front().size.height;
  bounds.origin.y = top - (bounds.origin.y + bounds.size.height);
  return bounds;
}

Rect UIElementUtilities::frameOfUIElement(const UIElement& element) const {
  const auto position = valueOfAttribute("AXPosition", element);
  const auto size = valueOfAttribute("AXSize", element);
  const auto* origin = position ? position->get<Point>() : nullptr;
  const auto* extent = size ? size->get<Size>() : nullptr;
  if (!origin || !extent) return {};
  return flippedScreenBounds({*origin, *extent});
}

Point UIElementUtilities::originOfUIElement(const UIElement& element) const {
  const auto value = valueOfAttribute("AXPosition", element);
  const auto* origin = value ? value->get<Point>() : nullptr;
  return origin ? *origin : Point{};
}

Size UIElementUtilities::sizeOfUIElement(const UIElement& element) const {
  const auto value = valueOfAttribute("AXSize", element);
  const auto* size = value ? value->get<Size>() : nullptr;
  return size ? *size : Size{};
}

}  // namespace kestro
