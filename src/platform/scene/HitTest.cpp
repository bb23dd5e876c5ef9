#include "platform/scene/HitTest.h"

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
  std::optional<ElementIndex> find(ElementIndex index) {
    // A list of children may lead back to where it came from.
    if (!visited_.insert(index).second) return std::nullopt;
    const SceneElement& element = state_.elements[index];
    if (element.contents.children) {
      const std::vector<UIElement>& children = *element.contents.children;
      for (auto child = children.rbegin(); child != children.rend(); ++child) {
        if (const auto found = find(elementIndex(*child))) return found;
      }
    }
    return holds(element, point_) ? std::optional(index) : std::nullopt;
  }

 private:
  const SceneState& state_;
  Point point_;
  std::set<ElementIndex> visited_;
};

}  // namespace

std::optional<ElementIndex> elementAtPoint(const SceneState& state, ElementIndex root,
                                           Point point) {
  return HitTest(state, point).find(root);
}

}  // namespace kestro
