// Which accessible window is which window of the X server. Pure functions.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "linux/windows/x11/X11Snapshot.h"

namespace kestro {

struct AccessibleWindow {
  std::optional<std::string> name;
  std::optional<Rect> extents;  // root coordinates
};

// 0 when nothing speaks for their being the same; an equal title counts more than one that the
// other begins with, and either more than a similar place.
int matchScore(const AccessibleWindow& accessible, const X11Window& window);

// The index of the best match, the first of equals; absent when nothing speaks for any.
std::optional<std::size_t> bestMatch(const std::vector<AccessibleWindow>& accessible,
                                     const X11Window& window);

}  // namespace kestro
