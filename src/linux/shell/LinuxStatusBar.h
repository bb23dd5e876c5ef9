// The status item as a StatusNotifierItem of the session bus
// (https://www.freedesktop.org/wiki/Specifications/StatusNotifierItem/), registered with whatever
// panel is there, and anew with each that comes. Everything goes on without one. Main thread only.
#pragma once

#include <memory>

#include "linux/session/BusConnection.h"
#include "linux/shell/DesktopAppearance.h"
#include "platform/NotificationCenter.h"
#include "platform/StatusBar.h"

namespace kestro {

class LinuxStatusBar final : public StatusBar {
 public:
  // What is given must outlive the bar. `iconDirectory`: where the program's icons lie when the
  // desktop's icon theme does not have them; empty: it has them.
  LinuxStatusBar(BusConnection& sessionBus, LinuxRunLoop& runLoop, DesktopAppearance& appearance,
                 std::string iconDirectory);

  std::unique_ptr<StatusItem> makeStatusItem(StatusItemProperties properties,
                                             StatusItemDelegate& delegate) override;

 private:
  BusConnection& sessionBus_;
  LinuxRunLoop& runLoop_;
  DesktopAppearance& appearance_;
  std::string iconDirectory_;
};

}  // namespace kestro
