// Between the X server's coordinates, whose origin is the top left of the root window, and the two
// systems of Geometry.h, whose origin is a corner of the main screen. Pure functions.
#pragma once

#include <vector>

#include "foundation/Geometry.h"

namespace kestro {

// `monitors` as in an X11 snapshot: root coordinates, the main one first, possibly none.
Point accessibilityPoint(Point rootPoint, const std::vector<Rect>& monitors);
Rect accessibilityBounds(const Rect& rootBounds, const std::vector<Rect>& monitors);
Point rootPoint(Point accessibilityPoint, const std::vector<Rect>& monitors);
// The monitors as screen frames, y upwards.
std::vector<Rect> screenFrames(const std::vector<Rect>& monitors);

}  // namespace kestro
