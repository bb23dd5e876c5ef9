// Elements and the values of their attributes in a scene. Private to this folder.
//
// An id names an element within a scope and in all later ones: the start of the scene is the first
// scope, each step is one of its own. A step may thus bring an element anew under its old id.
#pragma once

#include <map>
#include <set>
#include <string>

#include "scene/JsonNode.h"
#include "scene/SceneState.h"

namespace kestro {

class ElementLoader {
 public:
  explicit ElementLoader(SceneState& state) : state_(state) {}

  void beginScope() { scope_.clear(); }
  // Makes the ids of all elements below `node` known, so that references to them may come first.
  void declareElements(const JsonNode& node);

  // The application element of state.applications[application].
  ElementIndex loadApplicationElement(const JsonNode& node, std::size_t application);
  // What a step changes of an element.
  SceneElementContents loadChanges(const JsonNode& node, ElementIndex element);
  // The element with this id. Ends loading when there is none.
  ElementIndex find(const JsonNode& id) const;

  const std::map<std::string, ElementIndex, std::less<>>& elementsById() const { return ids_; }

 private:
  ElementIndex loadElement(const JsonNode& node, ElementIndex parent, const std::string& path);
  ElementIndex makeElement(const JsonNode& node, const std::string& unnamed);
  ElementIndex addElement(const std::string& description);
  SceneElementContents loadContents(const JsonNode& node, ElementIndex element,
                                    const std::string& path);
  std::vector<UIElement> loadChildren(const JsonNode& node, ElementIndex parent,
                                      const std::string& path);

  // `holder` and `path` are for an element that stands as a value.
  SceneValue loadAnswer(const JsonNode& node, ElementIndex holder, const std::string& path);
  SceneValue loadSlowAnswer(const JsonNode& node, ElementIndex holder, const std::string& path);
  AttributeValue loadValue(const JsonNode& node, ElementIndex holder, const std::string& path);
  AttributeValue loadList(const JsonNode& node, ElementIndex holder, const std::string& path);
  AttributeValue loadObject(const JsonNode& node, ElementIndex holder, const std::string& path);
  UIElement loadElementOrReference(const JsonNode& node, ElementIndex holder,
                                   const std::string& path);

  SceneState& state_;
  std::map<std::string, ElementIndex, std::less<>> ids_;
  std::set<std::string, std::less<>> scope_;
};

}  // namespace kestro
