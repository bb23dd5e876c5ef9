// One element of a scripted application, and the handles by which the rest of the program knows it.
// Owned by the scene's state; main thread only.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Accessibility.h"

namespace kestro {

// The place of an element in SceneState::elements. Elements are never taken away, so that a handle
// keeps its meaning after its application has quit.
using ElementIndex = std::size_t;

class SceneElementReference final : public UIElementReference {
 public:
  SceneElementReference(ElementIndex index, std::string description)
      : index_(index), description_(std::move(description)) {}

  ElementIndex index() const { return index_; }
  bool isEqual(const UIElementReference& other) const override;
  std::size_t hash() const override { return index_; }
  std::string description() const override { return description_; }

 private:
  ElementIndex index_;
  std::string description_;
};

UIElement makeSceneElementHandle(ElementIndex index, std::string description);
ElementIndex elementIndex(const UIElement& element);

// What a request for an attribute yields.
struct SceneValue {
  AccessibilityResult<AttributeValue> result;
  Seconds hang{0};  // how long the answer takes
};

struct SceneAttribute {
  std::string name;
  SceneValue value;
};

struct SceneAction {
  std::string name;
  std::string description;
};

// Attributes and the rest of an element as a scene gives them: all of a new element, or what
// changes of one that exists.
struct SceneElementContents {
  std::vector<SceneAttribute> attributes;  // in the order of the scene
  std::optional<std::vector<UIElement>> children;
  std::optional<std::vector<std::string>> settable;
  std::optional<std::vector<SceneAction>> actions;
  std::optional<SceneValue> hitTest;
};

class SceneElement {
 public:
  explicit SceneElement(UIElement elementHandle) : handle(std::move(elementHandle)) {}

  // Takes over what is there and leaves the rest as it is.
  void update(SceneElementContents changes);
  void setAttribute(std::string_view name, SceneValue value);

  const SceneValue* attribute(std::string_view name) const;
  // The attribute's value when it is a text, however long its answer takes.
  const std::string* text(std::string_view name) const;
  template <class Type>
  const Type* valueOf(std::string_view name) const;
  bool isSettable(std::string_view name) const;
  const SceneAction* action(std::string_view name) const;

  UIElement handle;
  std::optional<ElementIndex> parent;  // absent for an application element
  std::size_t application = 0;         // in SceneState::applications
  SceneElementContents contents;
};

template <class Type>
const Type* SceneElement::valueOf(std::string_view name) const {
  const SceneValue* found = attribute(name);
  return found && found->result.value ? found->result.value->get<Type>() : nullptr;
}

}  // namespace kestro
