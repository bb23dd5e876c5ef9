// The live Linux desktop: X11 windows, AT-SPI trees, desktop files, preferences as files, the tray,
// notifications and commands on the session bus, audio streams. What is missing (no X server, no
// bus) is absent and logged once.
#pragma once

#include <memory>

#include "platform/Desktop.h"

namespace kestro {

// Null when another helper serves this session already; nothing was asked or changed then.
std::unique_ptr<Desktop> makeLinuxDesktop(DesktopOptions options);

}  // namespace kestro
