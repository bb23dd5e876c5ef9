#include "linux/windows/ScreenCoordinates.h"

namespace kestro {
namespace {

Point mainOrigin(const std::vector<Rect>& monitors) {
  return monitors.empty() ? Point{} : monitors.front().origin;
}

}  // namespace

Point accessibilityPoint(Point rootPoint, const std::vector<Rect>& monitors) {
  const Point origin = mainOrigin(monitors);
  return {rootPoint.x - origin.x, rootPoint.y - origin.y};
}

Rect accessibilityBounds(const Rect& rootBounds, const std::vector<Rect>& monitors) {
  return {accessibilityPoint(rootBounds.origin, monitors), rootBounds.size};
}

Point rootPoint(Point accessibilityPoint, const std::vector<Rect>& monitors) {
  const Point origin = mainOrigin(monitors);
  return {accessibilityPoint.x + origin.x, accessibilityPoint.y + origin.y};
}

std::vector<Rect> screenFrames(const std::vector<Rect>& monitors) {
  std::vector<Rect> frames;
  for (const Rect& monitor : monitors) {
    const Rect bounds = accessibilityBounds(monitor, monitors);
    const double mainHeight = monitors.front().size.height;
    frames.push_back(
        {{bounds.origin.x, mainHeight - (bounds.origin.y + bounds.size.height)}, bounds.size});
  }
  return frames;
}

}  // namespace kestro
