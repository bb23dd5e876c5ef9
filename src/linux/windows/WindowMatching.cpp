#include "linux/windows/WindowMatching.h"

#include <algorithm>
#include <cmath>

namespace kestro {
namespace {

// GTK 3 counts the window manager's borders and its own shadows in.
constexpr double tolerance = 60;

bool isNear(const Rect& left, const Rect& right) {
  return std::abs(left.origin.x - right.origin.x) <= tolerance &&
         std::abs(left.origin.y - right.origin.y) <= tolerance &&
         std::abs(left.size.width - right.size.width) <= tolerance &&
         std::abs(left.size.height - right.size.height) <= tolerance;
}

// Chromium's accessible name goes on after the window's title: " (Incognito)", " - Person 1".
int titleScore(const std::optional<std::string>& name, const std::optional<std::string>& title) {
  if (!name || !title || name->empty() || title->empty()) return 0;
  if (*name == *title) return 4;
  return name->starts_with(*title) || title->starts_with(*name) ? 3 : 0;
}

}  // namespace

int matchScore(const AccessibleWindow& accessible, const X11Window& window) {
  const bool isClose = accessible.extents && isNear(*accessible.extents, window.bounds);
  return titleScore(accessible.name, window.name) + (isClose ? 2 : 0);
}

std::optional<std::size_t> bestMatch(const std::vector<AccessibleWindow>& accessible,
                                     const X11Window& window) {
  std::optional<std::size_t> best;
  int bestScore = 0;
  for (std::size_t index = 0; index < accessible.size(); ++index) {
    const int score = matchScore(accessible[index], window);
    if (score <= bestScore) continue;
    best = index;
    bestScore = score;
  }
  return best;
}

}  // namespace kestro
