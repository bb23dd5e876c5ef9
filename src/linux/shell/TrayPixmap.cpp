#include "linux/shell/TrayPixmap.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestro {
namespace {

// In units of the icon's size, which is drawn in a square of 16, as the icons of the theme are.
constexpr double units = 16;
constexpr double middle = 8;
constexpr double outerRadius = 7;
constexpr double innerRadius = 5.4;

struct Point {
  double x;
  double y;
};

// Distances to the edge of a form, negative inside.
double discDistance(Point point, double radius) {
  return std::hypot(point.x - middle, point.y - middle) - radius;
}

double ringDistance(Point point) {
  return std::max(discDistance(point, outerRadius), -discDistance(point, innerRadius));
}

double boxDistance(Point point, Point low, Point high) {
  return std::max({low.x - point.x, point.x - high.x, low.y - point.y, point.y - high.y});
}

double lineDistance(Point point, Point from, Point to, double width) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double along = std::clamp(
      ((point.x - from.x) * dx + (point.y - from.y) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
  return std::hypot(point.x - from.x - along * dx, point.y - from.y - along * dy) - width / 2;
}

// Pointing to the right.
double playDistance(Point point) {
  const double left = 6.2 - point.x;
  const double slope = (std::abs(point.y - middle) + (point.x - 11.4) * 0.62) / 1.18;
  return std::max(left, slope);
}

double distance(TrayIcon icon, Point point) {
  switch (icon) {
    case TrayIcon::tracking:
      return std::min({ringDistance(point), lineDistance(point, {8, 8}, {8, 4.4}, 1.5),
                       lineDistance(point, {8, 8}, {10.6, 9.5}, 1.5)});
    case TrayIcon::paused:
      return std::min({ringDistance(point), boxDistance(point, {5.6, 5.2}, {7.2, 10.8}),
                       boxDistance(point, {8.8, 5.2}, {10.4, 10.8})});
    case TrayIcon::timer:
      break;
  }
  return std::max(discDistance(point, outerRadius), -playDistance(point));
}

std::array<std::uint8_t, 3> valuesOf(TrayColour colour) {
  switch (colour) {
    case TrayColour::light:
      return {0xf2, 0xf2, 0xf2};
    case TrayColour::dark:
      return {0x2e, 0x34, 0x36};
    case TrayColour::grey:
      break;
  }
  return {0x80, 0x80, 0x80};
}

}  // namespace

Pixmap drawTrayIcon(TrayIcon icon, int size, TrayColour colour) {
  const std::array<std::uint8_t, 3> values = valuesOf(colour);
  const double scale = units / size;
  Pixmap pixmap{size, {}};
  pixmap.bytes.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size) * 4);
  for (int row = 0; row < size; ++row) {
    for (int column = 0; column < size; ++column) {
      const Point point{(column + 0.5) * scale, (row + 0.5) * scale};
      const double covered = std::clamp(0.5 - distance(icon, point) / scale, 0.0, 1.0);
      pixmap.bytes.push_back(static_cast<std::uint8_t>(std::lround(covered * 255)));
      pixmap.bytes.insert(pixmap.bytes.end(), values.begin(), values.end());
    }
  }
  return pixmap;
}

}  // namespace kestro
