// Whether the desktop prefers dark colours, as far as it says so on the session bus: the settings
// portal's org.freedesktop.appearance color-scheme, or the name of Xfce's theme. Main thread only.
#pragma once

#include <functional>
#include <optional>

#include "linux/session/BusConnection.h"

namespace kestro {

class DesktopAppearance {
 public:
  // Waits a little for the first answers, so that the first window has the right colours.
  explicit DesktopAppearance(BusConnection& sessionBus);
  ~DesktopAppearance();
  DesktopAppearance(const DesktopAppearance&) = delete;
  DesktopAppearance& operator=(const DesktopAppearance&) = delete;

  // Absent: nobody says, or nobody has said it yet.
  std::optional<bool> isDark() const;
  // Called when it has changed, also when it is known for the first time.
  void observe(std::function<void()> observer) { observer_ = std::move(observer); }

 private:
  static int onPortalAnswer(sd_bus_message* reply, void* appearance, sd_bus_error* error);
  static int onPortalChange(sd_bus_message* signal, void* appearance, sd_bus_error* error);
  static int onThemeAnswer(sd_bus_message* reply, void* appearance, sd_bus_error* error);
  static int onThemeChange(sd_bus_message* signal, void* appearance, sd_bus_error* error);
  void ask(sd_bus* bus);
  void take(std::optional<bool>& known, std::optional<bool> now);

  BusConnection& sessionBus_;
  std::function<void()> observer_;
  std::optional<bool> portalIsDark_;
  std::optional<bool> themeIsDark_;
  int answersToCome_ = 0;
  std::vector<SlotPointer> slots_;
};

}  // namespace kestro
