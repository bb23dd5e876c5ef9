// One status item on the session bus. Main thread only.
#pragma once

#include <string>

#include "linux/session/BusConnection.h"
#include "linux/shell/DBusMenu.h"
#include "linux/shell/DesktopAppearance.h"
#include "platform/StatusBar.h"

namespace kestro {

class StatusNotifierItem final : public StatusItem {
 public:
  StatusNotifierItem(BusConnection& sessionBus, LinuxRunLoop& runLoop,
                     DesktopAppearance& appearance, std::string iconDirectory,
                     StatusItemProperties properties, StatusItemDelegate& delegate);
  ~StatusNotifierItem() override;
  StatusNotifierItem(const StatusNotifierItem&) = delete;
  StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;

  const StatusItemProperties& properties() const override { return properties_; }
  void setProperties(StatusItemProperties properties) override;
  void observeEffectiveAppearance(std::function<void()> observer) override;

  // For the object's properties.
  int readProperty(std::string_view name, sd_bus_message* reply) const;

 private:
  static int onWatcherChange(sd_bus_message* signal, void* item, sd_bus_error* error);
  void connect(sd_bus* bus);
  void disconnect();
  void registerWithPanel() const;
  void announce(const char* signal) const;
  void updateMenuSoon();
  std::string text() const;
  std::string titleText() const;
  int appendPixmaps(sd_bus_message* reply) const;

  BusConnection& sessionBus_;
  LinuxRunLoop& runLoop_;
  DesktopAppearance& appearance_;
  std::string iconDirectory_;
  StatusItemProperties properties_;
  std::function<void()> appearanceObserver_;
  DBusMenu menu_;
  bool isMenuUpdatePending_ = false;
  sd_bus* bus_ = nullptr;
  SlotPointer object_;
  SlotPointer watcherMatch_;
};

}  // namespace kestro
