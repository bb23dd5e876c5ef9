// The value boxes of the accessibility interface and of the window server.
#pragma once

#include <cstdint>

namespace kestro {

// Points, sizes and rectangles are in screen points, double precision. The accessibility interface
// has its origin at the top left of the main screen with y growing downwards; screen frames have
// theirs at the bottom left with y growing upwards.
struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  Point origin;
  Size size;
  bool operator==(const Rect&) const = default;
};

// A range of a text, in the units of the application that reports it.
struct Range {
  std::int64_t location = 0;
  std::int64_t length = 0;
  bool operator==(const Range&) const = default;
};

}  // namespace kestro
