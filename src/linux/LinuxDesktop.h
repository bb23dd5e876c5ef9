// The live Linux desktop: X11 windows, AT-SPI trees, desktop files, preferences as files. Never
// fails to start: what is missing (no X server, no bus) is absent and logged once.
#pragma once

#include <memory>

#include "platform/Desktop.h"

namespace kestro {

std::unique_ptr<Desktop> makeLinuxDesktop(DesktopOptions options);

}  // namespace kestro
