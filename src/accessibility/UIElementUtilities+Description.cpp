#include <fmt/format.h>
#include <fmt/printf.h>

#include <algorithm>

#include "accessibility/AttributeValueText.h"
#include "accessibility/UIElementUtilities.h"

namespace kestro {
namespace {

constexpr std::size_t maximumLineage = 100;

bool isBox(const AttributeValue& value) {
  return value.get<Point>() || value.get<Size>() || value.get<Rect>() || value.get<Range>();
}

std::string boxDescription(const AttributeValue& value) {
  if (const auto* point = value.get<Point>()) return fmt::sprintf("x=%g y=%g", point->x, point->y);
  if (const auto* size = value.get<Size>()) {
    return fmt::sprintf("w=%g h=%g", size->width, size->height);
  }
  if (const auto* rect = value.get<Rect>()) {
    return fmt::sprintf("x=%g y=%g w=%g h=%g", rect->origin.x, rect->origin.y, rect->size.width,
                        rect->size.height);
  }
  const auto* range = value.get<Range>();
  return fmt::format("pos={} len={}", range->location, range->length);
}

// The name of the box type as the verbose form writes it, up to and with the blanks behind it.
const char* boxTypeName(const AttributeValue& value) {
  if (value.get<Point>()) return "AXPointValue ";
  if (value.get<Size>()) return "AXSizeValue ";
  return value.get<Rect>() ? "AXRectValue  " : "AXRangeValue ";
}

}  // namespace

std::string UIElementUtilities::stringDescriptionOfAXValue(const AttributeValue& value,
                                                           Verbosity verbosity) {
  if (!isBox(value)) return "AXValue???";
  if (verbosity == Verbosity::brief) return boxDescription(value);
  return fmt::format("<{}{}>", boxTypeName(value), boxDescription(value));
}

std::optional<std::string> UIElementUtilities::descriptionOfValue(
    const std::optional<AttributeValue>& value, Verbosity verbosity) const {
  if (!value) return std::nullopt;
  if (isBox(*value)) return stringDescriptionOfAXValue(*value, verbosity);
  if (const auto* list = value->get<AttributeValue::List>()) {
    return fmt::format("<array of size {}>", list->size());
  }
  if (const auto* element = value->get<UIElement>()) return descriptionOfElement(*element);
  return genericDescription(*value);
}

std::string UIElementUtilities::descriptionOfElement(const UIElement& element) const {
  const auto role = valueOfAttribute("AXRole", element);
  if (!role) return genericDescriptionOfElement(element);
  const auto title = valueOfAttribute("AXTitle", element);
  if (!title) return fmt::format("<{}>", descriptionOfPart(*role));
  return fmt::format("<{}: “{}”>", descriptionOfPart(*role), descriptionOfPart(*title));
}

std::string UIElementUtilities::genericDescriptionOfElement(const UIElement& element) const {
  return fmt::format("<AXUIElement {}> {{pid={}}}", element.reference().description(),
                     processIdentifierOfUIElement(element));
}

// A role or title is normally a text. An element there is not asked for its own.
std::string UIElementUtilities::descriptionOfPart(const AttributeValue& value) const {
  const auto* element = value.get<UIElement>();
  if (element) return genericDescriptionOfElement(*element);
  return descriptionOfValue(value, Verbosity::brief).value_or("");
}

std::optional<std::string> UIElementUtilities::descriptionForUIElement(const UIElement& element,
                                                                       std::string_view attribute,
                                                                       Verbosity verbosity) const {
  if (attribute == "AXChildren" || attribute == "AXRows") {
    const auto count = accessibility_.attributeValueCount(element, attribute);
    if (count.value) return fmt::format("<array of size {}>", *count.value);
  }
  return descriptionOfValue(valueOfAttribute(attribute, element), verbosity);
}

std::vector<std::string> UIElementUtilities::lineageOfUIElement(const UIElement& element) const {
  std::vector<UIElement> chain{element};
  while (chain.size() <= maximumLineage) {
    const auto parent = parentOfUIElement(chain.back());
    if (!parent || std::ranges::find(chain, *parent) != chain.end()) break;
    chain.push_back(*parent);
  }
  std::vector<std::string> lineage;
  for (auto ancestor = chain.rbegin(); ancestor != chain.rend(); ++ancestor) {
    lineage.push_back(descriptionOfElement(*ancestor));
  }
  return lineage;
}

std::string UIElementUtilities::lineageDescriptionOfUIElement(const UIElement& element) const {
  std::string text;
  std::string indentation;
  for (const std::string& entry : lineageOfUIElement(element)) {
    text += fmt::format("{}{}\n", indentation, entry);
    indentation += ' ';
  }
  return text;
}

std::string UIElementUtilities::stringDescriptionOfUIElement(const UIElement& element) const {
  return lineageDescriptionOfUIElement(element) + attributesDescription(element) +
         actionsDescription(element);
}

std::string UIElementUtilities::attributesDescription(const UIElement& element) const {
  const auto names = attributeNamesOfUIElement(element);
  if (!names || names->empty()) return {};
  std::string text = "\nAttributes:\n";
  for (const std::string& name : *names) {
    const char* writable = canSetAttribute(name, element) ? " (W)" : "";
    const auto value = descriptionForUIElement(element, name, Verbosity::brief);
    text += fmt::format("   {}{}:  “{}”\n", name, writable, value.value_or("(nil)"));
  }
  return text;
}

std::string UIElementUtilities::actionsDescription(const UIElement& element) const {
  const auto names = actionNamesOfUIElement(element);
  if (!names || names->empty()) return {};
  std::string text = "\nActions:\n";
  for (const std::string& name : *names) {
    text += fmt::format("   {} - {}\n", name, descriptionOfAction(name, element).value_or("(nil)"));
  }
  return text;
}

std::string UIElementUtilities::descriptionOfAXDescriptionOfUIElement(
    const UIElement& element) const {
  const auto text =
      descriptionOfValue(valueOfAttribute("AXDescription", element), Verbosity::brief);
  return text && !text->empty() ? *text : "No Description";
}

}  // namespace kestro
