#include "linux/shell/LinuxStatusBar.h"

#include "linux/shell/StatusNotifierItem.h"

namespace kestro {

LinuxStatusBar::LinuxStatusBar(BusConnection& sessionBus, LinuxRunLoop& runLoop,
                               DesktopAppearance& appearance, std::string iconDirectory)
    : sessionBus_(sessionBus),
      runLoop_(runLoop),
      appearance_(appearance),
      iconDirectory_(std::move(iconDirectory)) {}

std::unique_ptr<StatusItem> LinuxStatusBar::makeStatusItem(StatusItemProperties properties,
                                                           StatusItemDelegate& delegate) {
  return std::make_unique<StatusNotifierItem>(sessionBus_, runLoop_, appearance_, iconDirectory_,
                                              std::move(properties), delegate);
}

}  // namespace kestro
