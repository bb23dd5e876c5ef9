#include "scene/SceneElementSearch.h"

#include <algorithm>

#include "scene/DerivedAttributes.h"

namespace kestro {

void SceneElementSearch::visit(ElementIndex index, std::int64_t levels) {
  if (isOver()) return;
  ++examined_;
  const SceneElement& element = state_.elements[index];
  if (meetsConditions(element)) found_.push_back(element.handle);
  if (levels < 1 || isOver()) return;
  for (const ElementIndex child : children(element))
    visit(child, levels - 1);
}

bool SceneElementSearch::meetsConditions(const SceneElement& element) {
  return std::ranges::all_of(search_.conditions, [&](const ElementCondition& condition) {
    const auto value = read(element, condition.attribute);
    return value && condition.holdsFor(*value);
  });
}

std::vector<ElementIndex> SceneElementSearch::children(const SceneElement& element) {
  const auto value = read(element, "AXChildren");
  const auto* members = value ? value->get<AttributeValue::List>() : nullptr;
  if (!members) return {};
  std::vector<ElementIndex> indices;
  for (const AttributeValue& member : *members) {
    const auto* child = member.get<UIElement>();
    if (!child) return {};
    indices.push_back(elementIndex(*child));
  }
  return indices;
}

std::optional<AttributeValue> SceneElementSearch::read(const SceneElement& element,
                                                       std::string_view attribute) {
  if (!state_.applications[element.application].isRunning) return std::nullopt;
  const SceneValue* given = element.attribute(attribute);
  if (!given) return derivedAttribute(state_, element, attribute);
  duration_ += std::min(given->hang, patience_);
  return given->hang > patience_ ? std::nullopt : given->result.value;
}

}  // namespace kestro
