#include "linux/accessibility/ElementAttributes.h"

#include <algorithm>
#include <iterator>

#include "foundation/Utf8.h"
#include "linux/accessibility/EmbeddedTexts.h"

namespace kestro {
namespace {

// Of a text that is read: a letter being written may have any number of paragraphs.
constexpr int mostEmbeddedElements = 20;

AccessibilityResult<AttributeValue> asValue(const AccessibilityResult<std::string>& text) {
  if (!text.value) return text.error;
  return AttributeValue(*text.value);
}

// Absent texts and empty ones are the same in AT-SPI; the designed platform tells them apart.
AccessibilityResult<AttributeValue> asValueUnlessEmpty(
    const AccessibilityResult<std::string>& text) {
  if (text.value && text.value->empty()) return AccessibilityError::noValue;
  return asValue(text);
}

AttributeValue::List split(std::string_view text) {
  AttributeValue::List words;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end > 0) words.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return words;
}

std::string textOf(const AtspiAttributes& attributes, std::string_view name) {
  const auto found = attributes.find(name);
  return found == attributes.end() ? std::string() : found->second;
}

}  // namespace

const ElementAttributes::Row ElementAttributes::rows[]{
    {"AXRole", &ElementAttributes::role, false},
    {"AXSubrole", &ElementAttributes::subrole, false},
    {"AXRoleDescription", &ElementAttributes::roleDescription, false},
    {"AXTitle", &ElementAttributes::title, false},
    {"AXDescription", &ElementAttributes::description, false},
    {"AXHelp", &ElementAttributes::help, false},
    {"AXValue", &ElementAttributes::elementValue, false},
    {"AXIdentifier", &ElementAttributes::identifier, false},
    {"AXDOMIdentifier", &ElementAttributes::domIdentifier, false},
    {"AXDOMClassList", &ElementAttributes::domClassList, false},
    {"AXURL", &ElementAttributes::url, false},
    {"AXChildren", &ElementAttributes::children, false},
    {"AXChildrenInNavigationOrder", &ElementAttributes::children, false},
    {"AXContents", &ElementAttributes::contents, false},
    {"AXParent", &ElementAttributes::parent, false},
    {"AXWindow", &ElementAttributes::window, false},
    {"AXPosition", &ElementAttributes::position, false},
    {"AXSize", &ElementAttributes::size, false},
    {"AXEnabled", &ElementAttributes::isEnabled, false},
    {"AXFocused", &ElementAttributes::isFocused, false},
    {"AXSelected", &ElementAttributes::isSelected, false},
    {"AXSelectedRows", &ElementAttributes::selectedRows, false},
    {"AXModal", &ElementAttributes::isModal, true},
    {"AXFullScreen", &ElementAttributes::isFullScreen, true},
    {"AXMinimized", &ElementAttributes::isMinimized, true},
    {"AXMain", &ElementAttributes::isMain, true},
    {"AXDocument", &ElementAttributes::document, true},
};

AccessibilityResult<AttributeValue> ElementAttributes::value(const AtspiElement& element,
                                                             std::string_view attribute) {
  if (element.kind() == AtspiElement::Kind::pageScrollArea) {
    return pageScrollAreaValue(element, attribute);
  }
  const auto* row = std::ranges::find(rows, attribute, &Row::name);
  if (row == std::end(rows)) return AccessibilityError::attributeUnsupported;
  return (this->*row->read)(element);
}

AccessibilityResult<std::vector<std::string>> ElementAttributes::names(
    const AtspiElement& element) {
  if (element.kind() == AtspiElement::Kind::pageScrollArea) {
    return std::vector<std::string>{"AXRole", "AXChildren", "AXContents", "AXParent", "AXWindow"};
  }
  const auto role = reader_.role(element.object());
  if (!role.value) return role.error;
  const bool isWindow = windows_.isTopLevel(element.object(), element.process());
  std::vector<std::string> names;
  for (const Row& row : rows) {
    if (!row.isOfWindows || isWindow) names.emplace_back(row.name);
  }
  return names;
}

AccessibilityResult<std::int64_t> ElementAttributes::count(const AtspiElement& element,
                                                           std::string_view attribute) {
  const bool isObject = element.kind() == AtspiElement::Kind::object;
  if (isObject && attribute == "AXChildren") {
    const auto count = reader_.childCount(element.object());
    if (!count.value) return count.error;
    return static_cast<std::int64_t>(*count.value);
  }
  const auto list = value(element, attribute);
  if (!list.value) return list.error;
  const auto* members = list.value->get<AttributeValue::List>();
  if (!members) return AccessibilityError::illegalArgument;
  return static_cast<std::int64_t>(members->size());
}

AccessibilityResult<AttributeValue> ElementAttributes::pageScrollAreaValue(
    const AtspiElement& element, std::string_view attribute) {
  const AtspiElement frame(AtspiElement::Kind::object, element.process(), element.object());
  if (attribute == "AXRole") return AttributeValue("AXScrollArea");
  if (attribute == "AXParent" || attribute == "AXWindow") {
    return AttributeValue(makeObjectElement(element.process(), element.object()));
  }
  if (attribute == "AXPosition" || attribute == "AXSize") return value(frame, attribute);
  if (attribute != "AXChildren" && attribute != "AXContents") {
    return AccessibilityError::attributeUnsupported;
  }
  const auto page = reader_.activeDocument(element.object());
  if (!page.value) return page.error;
  return elements(element, {*page.value});
}

bool ElementAttributes::isOfChromiumPage(const AtspiObject& object) {
  const auto origin = chromiumOrigin(object);
  return origin && origin->isPage;
}

AccessibilityResult<AtspiTraits> ElementAttributes::traits(const AtspiElement& element,
                                                           AtspiRole role, bool needsAttributes) {
  AtspiTraits traits;
  const bool mayBeWindow =
      role == AtspiRole::dialog || role == AtspiRole::alert || role == AtspiRole::fileChooser;
  if (mayBeWindow) traits.isTopLevel = windows_.isTopLevel(element.object(), element.process());
  if (!needsAttributes && roleDependsOnStates(role)) {
    const auto states = reader_.states(element.object());
    if (!states.value) return states.error;
    traits.states = *states.value;
  }
  const bool readsAttributes =
      needsAttributes ? subroleDependsOnAttributes(role)
                      : roleDependsOnAttributes(role) && isOfChromiumPage(element.object());
  if (readsAttributes) {
    const auto attributes = reader_.attributes(element.object());
    if (!attributes.value) return attributes.error;
    traits.xmlRoles = textOf(*attributes.value, "xml-roles");
    traits.tag = textOf(*attributes.value, "tag");
    traits.hasPopup = textOf(*attributes.value, "haspopup");
  }
  return traits;
}

AccessibilityResult<AttributeValue> ElementAttributes::role(const AtspiElement& element) {
  const auto role = reader_.role(element.object());
  if (!role.value) return role.error;
  const auto known = traits(element, *role.value, false);
  if (!known.value) return known.error;
  return AttributeValue(axRole(*role.value, *known.value));
}

AccessibilityResult<AttributeValue> ElementAttributes::subrole(const AtspiElement& element) {
  const auto role = reader_.role(element.object());
  if (!role.value) return role.error;
  const auto known = traits(element, *role.value, true);
  if (!known.value) return known.error;
  const auto subrole = axSubrole(*role.value, *known.value);
  if (!subrole) return AccessibilityError::noValue;
  return AttributeValue(*subrole);
}

AccessibilityResult<AttributeValue> ElementAttributes::roleDescription(
    const AtspiElement& element) {
  return asValueUnlessEmpty(reader_.localizedRoleName(element.object()));
}

// In Chromium's pages a name that comes from an attribute (aria-label) is what the designed
// platform has as a description.
bool ElementAttributes::isNamedByDescription(const AtspiElement& element) {
  const auto role = reader_.role(element.object());
  if (!role.value || isDocument(*role.value) || *role.value == AtspiRole::frame) return false;
  const auto attributes = reader_.attributes(element.object());
  if (!attributes.value) return false;
  const auto source = attributes.value->find("name-from");
  return source != attributes.value->end() && source->second == "attribute";
}

AccessibilityResult<AttributeValue> ElementAttributes::title(const AtspiElement& element) {
  const auto name = reader_.name(element.object());
  if (!name.value) return name.error;
  if (name.value->empty()) {
    // A window's title may be empty; nothing else has one then.
    const auto role = reader_.role(element.object());
    const bool isWindow = role.value == AtspiRole::frame || role.value == AtspiRole::window;
    return isWindow ? Result(AttributeValue(*name.value)) : Result(AccessibilityError::noValue);
  }
  if (isNamedByDescription(element)) return AccessibilityError::noValue;
  return AttributeValue(withoutControlCharacters(*name.value));
}

AccessibilityResult<AttributeValue> ElementAttributes::description(const AtspiElement& element) {
  if (isNamedByDescription(element)) return asValueUnlessEmpty(reader_.name(element.object()));
  return asValueUnlessEmpty(reader_.description(element.object()));
}

AccessibilityResult<AttributeValue> ElementAttributes::help(const AtspiElement& element) {
  return asValueUnlessEmpty(reader_.helpText(element.object()));
}

AccessibilityResult<AttributeValue> ElementAttributes::elementValue(const AtspiElement& element) {
  const auto role = reader_.role(element.object());
  if (!role.value) return role.error;
  return valueOfRole(element, *role.value);
}

AccessibilityResult<AttributeValue> ElementAttributes::valueOfRole(const AtspiElement& element,
                                                                   AtspiRole role) {
  const AtspiObject& object = element.object();
  switch (role) {
    case AtspiRole::checkBox:
    case AtspiRole::radioButton:
    case AtspiRole::checkMenuItem:
    case AtspiRole::radioMenuItem:
      return state(element, AtspiState::checked);
    case AtspiRole::toggleButton:
      return state(element, AtspiState::pressed);
    case AtspiRole::pageTab:
      return state(element, AtspiState::selected);
    case AtspiRole::slider:
    case AtspiRole::progressBar:
    case AtspiRole::scrollBar:
    case AtspiRole::spinButton: {
      const auto number = reader_.currentValue(object);
      return number.value ? Result(AttributeValue(*number.value)) : Result(number.error);
    }
    case AtspiRole::entry:
    case AtspiRole::text:
    case AtspiRole::autocomplete:
    case AtspiRole::documentText: {
      int elementsLeft = mostEmbeddedElements;
      return asValue(wholeText(object, elementsLeft));
    }
    case AtspiRole::staticText:
    case AtspiRole::label:
    case AtspiRole::comboBox:
      return asValueUnlessEmpty(reader_.name(object));
    default:
      return AccessibilityError::noValue;  // a password is never read
  }
}

AccessibilityResult<std::string> ElementAttributes::wholeText(const AtspiObject& object,
                                                              int& elementsLeft) {
  auto text = reader_.text(object);
  if (!text.value || !hasEmbeddedTexts(*text.value)) return text;
  auto children = reader_.children(object);
  if (!children.value) return text;
  reader_.prefetchRoles(*children.value);
  std::vector<EmbeddedText> embedded;
  for (const AtspiObject& child : *children.value) {
    const auto role = reader_.role(child);
    if (role.value == AtspiRole::staticText) continue;  // it is part of the text itself
    if (--elementsLeft < 0) break;
    const bool isBlock = role.value != AtspiRole::link && role.value != AtspiRole::image;
    embedded.push_back({wholeText(child, elementsLeft).value.value_or(""), isBlock});
  }
  return withEmbeddedTexts(*text.value, embedded);
}

AccessibilityResult<AttributeValue> ElementAttributes::objectAttribute(const AtspiElement& element,
                                                                       std::string_view name) {
  const auto attributes = reader_.attributes(element.object());
  if (!attributes.value) return attributes.error;
  const auto found = attributes.value->find(name);
  if (found == attributes.value->end() || found->second.empty()) {
    return AccessibilityError::noValue;
  }
  return AttributeValue(found->second);
}

AccessibilityResult<AttributeValue> ElementAttributes::identifier(const AtspiElement& element) {
  return objectAttribute(element, "id");
}

AccessibilityResult<AttributeValue> ElementAttributes::domIdentifier(const AtspiElement& element) {
  return objectAttribute(element, "id");
}

AccessibilityResult<AttributeValue> ElementAttributes::domClassList(const AtspiElement& element) {
  const auto classes = objectAttribute(element, "class");
  if (!classes.value) return classes.error;
  return AttributeValue(split(*classes.value->get<std::string>()));
}

AccessibilityResult<std::string> ElementAttributes::pageAddress(const AtspiObject& document) {
  const auto attributes = reader_.documentAttributes(document);
  if (!attributes.value) return attributes.error;
  for (const std::string_view key : {"URI", "DocURL"}) {  // Chromium's and Firefox's
    const auto found = attributes.value->find(key);
    if (found != attributes.value->end() && !found->second.empty()) return found->second;
  }
  return AccessibilityError::noValue;
}

AccessibilityResult<AttributeValue> ElementAttributes::url(const AtspiElement& element) {
  const auto role = reader_.role(element.object());
  if (!role.value) return role.error;
  if (!isDocument(*role.value) && *role.value != AtspiRole::link) {
    return AccessibilityError::noValue;
  }
  const auto address = *role.value == AtspiRole::link ? reader_.linkAddress(element.object())
                                                      : pageAddress(element.object());
  if (!address.value) return address.error;
  if (address.value->empty()) return AccessibilityError::noValue;
  return AttributeValue(WebAddress{*address.value});
}

}  // namespace kestro
