#include "scene/DerivedAttributes.h"

#include <array>

namespace kestro {
namespace {

constexpr std::string_view windowRole = "AXWindow";

using Derivation = std::optional<AttributeValue> (*)(const SceneState&, const SceneElement&);

bool isApplicationElement(const SceneElement& element) {
  return !element.parent;
}

bool isWindow(const SceneElement& element) {
  const std::string* role = element.text("AXRole");
  return role && *role == windowRole;
}

std::optional<AttributeValue> role(const SceneState&, const SceneElement& element) {
  if (!isApplicationElement(element)) return std::nullopt;
  return "AXApplication";
}

std::optional<AttributeValue> title(const SceneState& state, const SceneElement& element) {
  if (!isApplicationElement(element)) return std::nullopt;
  const auto& name = state.applications[element.application].description.localizedName;
  return name ? std::optional<AttributeValue>(*name) : std::nullopt;
}

std::optional<AttributeValue> parent(const SceneState& state, const SceneElement& element) {
  if (!element.parent) return std::nullopt;
  return state.elements[*element.parent].handle;
}

// The nearest window around the element.
std::optional<AttributeValue> window(const SceneState& state, const SceneElement& element) {
  for (auto outer = element.parent; outer; outer = state.elements[*outer].parent) {
    if (isWindow(state.elements[*outer])) return state.elements[*outer].handle;
  }
  return std::nullopt;
}

std::optional<AttributeValue> children(const SceneState&, const SceneElement& element) {
  if (!element.contents.children) return std::nullopt;
  return AttributeValue::List(element.contents.children->begin(), element.contents.children->end());
}

std::optional<AttributeValue> windows(const SceneState& state, const SceneElement& element) {
  if (!isApplicationElement(element) || !element.contents.children) return std::nullopt;
  AttributeValue::List found;
  for (const UIElement& child : *element.contents.children) {
    if (isWindow(state.elements[elementIndex(child)])) found.emplace_back(child);
  }
  return found;
}

struct NamedDerivation {
  std::string_view name;
  Derivation derive;
};

constexpr std::array<NamedDerivation, 6> derivations{{{"AXRole", role},
                                                      {"AXTitle", title},
                                                      {"AXParent", parent},
                                                      {"AXWindow", window},
                                                      {"AXChildren", children},
                                                      {"AXWindows", windows}}};

}  // namespace

std::optional<AttributeValue> derivedAttribute(const SceneState& state, const SceneElement& element,
                                               std::string_view name) {
  for (const NamedDerivation& derivation : derivations) {
    if (derivation.name == name) return derivation.derive(state, element);
  }
  return std::nullopt;
}

std::vector<std::string> attributeNames(const SceneState& state, const SceneElement& element) {
  std::vector<std::string> names;
  for (const SceneAttribute& given : element.contents.attributes) {
    names.push_back(given.name);
  }
  for (const NamedDerivation& derivation : derivations) {
    if (element.attribute(derivation.name)) continue;
    if (derivation.derive(state, element)) names.emplace_back(derivation.name);
  }
  return names;
}

bool hasAttribute(const SceneState& state, const SceneElement& element, std::string_view name) {
  return element.attribute(name) || derivedAttribute(state, element, name);
}

}  // namespace kestro
