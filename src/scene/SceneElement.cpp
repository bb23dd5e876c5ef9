#include "scene/SceneElement.h"

#include <algorithm>

namespace kestro {
namespace {

constexpr std::string_view childrenAttribute = "AXChildren";

std::vector<UIElement> elementsOfList(const AttributeValue::List& list) {
  std::vector<UIElement> elements;
  for (const AttributeValue& member : list) {
    if (const auto* element = member.get<UIElement>()) elements.push_back(*element);
  }
  return elements;
}

}  // namespace

bool SceneElementReference::isEqual(const UIElementReference& other) const {
  return index_ == static_cast<const SceneElementReference&>(other).index_;
}

UIElement makeSceneElementHandle(ElementIndex index, std::string description) {
  return UIElement(std::make_shared<SceneElementReference>(index, std::move(description)));
}

ElementIndex elementIndex(const UIElement& element) {
  return static_cast<const SceneElementReference&>(element.reference()).index();
}

void SceneElement::update(SceneElementContents changes) {
  // New children replace an older list that was given as an attribute.
  if (changes.children) {
    std::erase_if(contents.attributes,
                  [](const SceneAttribute& given) { return given.name == childrenAttribute; });
  }
  for (SceneAttribute& changed : changes.attributes) {
    setAttribute(changed.name, std::move(changed.value));
  }
  if (changes.children) contents.children = std::move(changes.children);
  if (changes.settable) contents.settable = std::move(changes.settable);
  if (changes.actions) contents.actions = std::move(changes.actions);
  if (changes.hitTest) contents.hitTest = std::move(changes.hitTest);
}

void SceneElement::setAttribute(std::string_view name, SceneValue value) {
  // A list of children is also what a hit test descends through.
  if (name == childrenAttribute && value.result.value) {
    const auto* list = value.result.value->get<AttributeValue::List>();
    if (list) contents.children = elementsOfList(*list);
  }
  auto found = std::ranges::find(contents.attributes, name, &SceneAttribute::name);
  if (found != contents.attributes.end()) {
    found->value = std::move(value);
  } else {
    contents.attributes.push_back({std::string(name), std::move(value)});
  }
}

const SceneValue* SceneElement::attribute(std::string_view name) const {
  auto found = std::ranges::find(contents.attributes, name, &SceneAttribute::name);
  return found == contents.attributes.end() ? nullptr : &found->value;
}

const std::string* SceneElement::text(std::string_view name) const {
  return valueOf<std::string>(name);
}

bool SceneElement::isSettable(std::string_view name) const {
  return contents.settable &&
         std::ranges::find(*contents.settable, name) != contents.settable->end();
}

const SceneAction* SceneElement::action(std::string_view name) const {
  if (!contents.actions) return nullptr;
  auto found = std::ranges::find(*contents.actions, name, &SceneAction::name);
  return found == contents.actions->end() ? nullptr : &*found;
}

}  // namespace kestro
