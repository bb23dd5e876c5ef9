// The window list of the live desktop. Main thread only.
#pragma once

#include "linux/windows/x11/X11Desktop.h"
#include "platform/WindowServer.h"

namespace kestro {

class X11WindowServer final : public WindowServer {
 public:
  explicit X11WindowServer(X11Desktop& desktop) : desktop_(desktop) {}

  // Every entry is shared (1): X11 keeps no window's content from other programs, so 0 never
  // occurs.
  std::vector<WindowEntry> onScreenWindows() override;

  // X11 asks nobody's permission, so there is nothing to request.
  bool hasScreenCaptureAccess() override { return true; }
  void requestScreenCaptureAccess() override {}

 private:
  X11Desktop& desktop_;
};

// The layer that the designed platform gives such windows; 0 for ordinary ones.
std::int64_t windowLayer(X11WindowType type);

}  // namespace kestro
