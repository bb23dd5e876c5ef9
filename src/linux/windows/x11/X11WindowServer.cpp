#include "linux/windows/x11/X11WindowServer.h"

#include "linux/windows/ScreenCoordinates.h"

namespace kestro {

std::int64_t windowLayer(X11WindowType type) {
  switch (type) {
    case X11WindowType::ordinary:
      return 0;
    case X11WindowType::desktop:
      return -2147483623;
    case X11WindowType::dock:
      return 20;
    case X11WindowType::notification:
      return 25;
    case X11WindowType::menu:
      return 101;
    case X11WindowType::tooltip:
      return 200;
  }
  return 0;
}

std::vector<WindowEntry> X11WindowServer::onScreenWindows() {
  const X11Snapshot& snapshot = desktop_.snapshot();
  std::vector<WindowEntry> entries;
  for (const X11Window& window : snapshot.windows) {
    if (!window.isOnScreen) continue;
    entries.push_back({window.process, window.name, windowLayer(window.type), 1,
                       accessibilityBounds(window.bounds, snapshot.monitors)});
  }
  return entries;
}

}  // namespace kestro
