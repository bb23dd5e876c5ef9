#include "scene/HitTest.h"

#include <set>

namespace kestro {
namespace {

bool holds(const SceneElement& element, Point point) {
  const auto* origin = element.valueOf<Point>("AXPosition");
  const auto* size = element.valueOf<Size>("AXSize");
  if (!origin || !size) return false;
  return point.x >= origin->x && point.x < origin->x + size->width && point.y >= origin->y &&
         point.y < origin->y + size->height;
}

class HitTest {
 public:
  HitTest(const SceneState& state, Point point) : state_(state), point_(point) {}

  // Children need not lie within their parent: a menu hangs off its button.
  void visit(ElementIndex index, std::size_t depth) {
    // A list of children may lead back to where it came from.
    if (!visited_.insert(index).second) return;
    const SceneElement& element = state_.elements[index];
    // Of equally deep ones the later is in front.
    if (holds(element, point_) && (!found_ || depth >= depthOfFound_)) {
      found_ = index;
      depthOfFound_ = depth;
    }
    if (!element.contents.children) return;
    for (const UIElement& child : *element.contents.children) {
      visit(elementIndex(child), depth + 1);
    }
  }

  std::optional<ElementIndex> found() const { return found_; }

 private:
  const SceneState& state_;
  Point point_;
  std::set<ElementIndex> visited_;
  std::optional<ElementIndex> found_;
  std::size_t depthOfFound_ = 0;
};

}  // namespace

std::optional<ElementIndex> elementAtPoint(const SceneState& state, ElementIndex root,
                                           Point point) {
  HitTest hitTest(state, point);
  hitTest.visit(root, 0);
  return hitTest.found();
}

}  // namespace kestro
