// What the X server knew about windows and monitors at one moment. Coordinates are the root
// window's; plain value types.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/Geometry.h"
#include "platform/Accessibility.h"

namespace kestro {

using X11WindowIdentifier = std::uint32_t;

enum class X11WindowType { ordinary, desktop, dock, menu, tooltip, notification };

struct X11Window {
  X11WindowIdentifier identifier = 0;
  // The process at the other end of the window's connection, as the X server knows it, else the one
  // that the window names: a window from another process namespace names a number that is wrong
  // here.
  std::optional<ProcessIdentifier> process;
  std::optional<std::string> name;  // always UTF-8
  std::string instanceName;         // of WM_CLASS, empty without one
  std::string className;
  std::string gtkApplicationIdentifier;
  X11WindowType type = X11WindowType::ordinary;
  Rect bounds;  // without the window manager's borders
  bool isOnScreen = false;
  bool isFullScreen = false;
  bool isMinimized = false;
  bool isModal = false;
};

struct X11Snapshot {
  std::vector<X11Window> windows;         // front to back
  X11WindowIdentifier activeWindow = 0;   // 0: none
  X11WindowIdentifier windowManager = 0;  // its own window; 0: none runs
  std::vector<Rect> monitors;             // the main one first

  const X11Window* find(X11WindowIdentifier identifier) const;
  const X11Window* active() const { return find(activeWindow); }
};

}  // namespace kestro
