// A search through a scripted application, answered as one request.
#pragma once

#include <vector>

#include "platform/ElementSearch.h"
#include "scene/SceneState.h"

namespace kestro {

class SceneElementSearch {
 public:
  // An attribute whose answer takes longer than `patience` counts as unreadable.
  SceneElementSearch(const SceneState& state, const ElementSearch& search, Seconds patience)
      : state_(state), search_(search), patience_(patience) {}

  // Adds to what was found. `levels`: how far below the element to look.
  void visit(ElementIndex index, std::int64_t levels);

  const std::vector<UIElement>& found() const { return found_; }
  // The sum of what the answers took.
  Seconds duration() const { return duration_; }

 private:
  std::optional<AttributeValue> read(const SceneElement& element, std::string_view attribute);
  bool meetsConditions(const SceneElement& element);
  // None where the list holds anything else, as for everybody who reads lists of elements.
  std::vector<ElementIndex> children(const SceneElement& element);
  bool isOver() const {
    return found_.size() >= search_.mostFound || examined_ >= search_.mostExamined;
  }

  const SceneState& state_;
  const ElementSearch& search_;
  Seconds patience_;
  std::vector<UIElement> found_;
  std::size_t examined_ = 0;
  Seconds duration_{0};
};

}  // namespace kestro
