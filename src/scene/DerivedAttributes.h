// Attributes that follow from the structure of a scripted application: AXParent and AXWindow from
// the nesting, AXChildren from `children`, and for an application element AXRole, AXTitle and
// AXWindows. Those that a scene gives take precedence.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scene/SceneState.h"

namespace kestro {

// Absent when the element gives and derives no such attribute.
std::optional<AttributeValue> derivedAttribute(const SceneState& state, const SceneElement& element,
                                               std::string_view name);

// The given attributes in the order of the scene, then the derived ones.
std::vector<std::string> attributeNames(const SceneState& state, const SceneElement& element);

// Whether the element gives or derives the attribute.
bool hasAttribute(const SceneState& state, const SceneElement& element, std::string_view name);

}  // namespace kestro
