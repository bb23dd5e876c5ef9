// The window server's list of windows, the second channel for titles and bounds. Main thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/Geometry.h"
#include "platform/Accessibility.h"

namespace kestro {

// One on-screen window. Absent fields were not reported.
struct WindowEntry {
  std::optional<ProcessIdentifier> ownerProcessIdentifier;
  std::optional<std::string> name;
  std::optional<std::int64_t> layer;         // 0 is the layer of ordinary windows
  std::optional<std::int64_t> sharingState;  // 0: its content is not shared with other processes
  std::optional<Rect> bounds;
};

class WindowServer {
 public:
  virtual ~WindowServer() = default;

  // Windows on screen, front to back, without elements of the desktop. Empty when the list cannot
  // be had. Costs the window server one snapshot and other applications nothing.
  virtual std::vector<WindowEntry> onScreenWindows() = 0;

  virtual bool hasScreenCaptureAccess() = 0;
  // Asks the user, through the platform's own prompt. Does not wait for the answer.
  virtual void requestScreenCaptureAccess() = 0;
};

}  // namespace kestro
