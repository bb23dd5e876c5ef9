// The status item's icons as pixels, for panels that know none of the icon theme: a ring, with a
// hand while tracking, two bars while paused, and filled with a play mark while a timer runs.
#pragma once

#include <cstdint>
#include <vector>

namespace kestro {

enum class TrayIcon { tracking, paused, timer };

struct Pixmap {
  int size = 0;                     // width and height
  std::vector<std::uint8_t> bytes;  // alpha, red, green, blue of each pixel, row by row
};

// Light for a dark panel, dark for a light one, and grey where nobody knows.
enum class TrayColour { light, dark, grey };

Pixmap drawTrayIcon(TrayIcon icon, int size, TrayColour colour);

}  // namespace kestro
