// The status item's menu on the session bus: the object that panels read rows from and send clicks
// to (com.canonical.dbusmenu, version 3, of libdbusmenu). Main thread only.
//
// Panels announce an opening in one of three ways, some in two at once, and not all of them say
// when the menu has been closed: an opening that nothing ended counts as closed after a while.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <set>

#include "linux/session/BusConnection.h"
#include "linux/shell/MenuRows.h"
#include "platform/StatusBar.h"

namespace kestro {

class DBusMenu {
 public:
  static constexpr const char* objectPath = "/MenuBar";

  // The delegate must outlive it.
  DBusMenu(LinuxRunLoop& runLoop, StatusItemDelegate& delegate);
  DBusMenu(const DBusMenu&) = delete;
  DBusMenu& operator=(const DBusMenu&) = delete;

  void connect(sd_bus* bus);
  void disconnect();
  // Tells panels when the rows have become others. Asks the delegate for them.
  void update();

  // For the object's methods.
  int layout(sd_bus_message* call, sd_bus_error* error);
  int groupProperties(sd_bus_message* call, sd_bus_error* error);
  int property(sd_bus_message* call, sd_bus_error* error);
  int event(sd_bus_message* call, sd_bus_error* error);
  int eventGroup(sd_bus_message* call, sd_bus_error* error);
  int aboutToShow(sd_bus_message* call, sd_bus_error* error);
  int aboutToShowGroup(sd_bus_message* call, sd_bus_error* error);

 private:
  bool refresh();
  void announceRows();
  void takeBackShortcuts();
  void handleEvent(std::int32_t number, std::string_view type);
  bool open();
  void close();
  void click(std::int32_t number);

  LinuxRunLoop& runLoop_;
  StatusItemDelegate& delegate_;
  sd_bus* bus_ = nullptr;
  SlotPointer object_;
  MenuRows numbering_;
  MenuRow root_;
  std::uint32_t revision_ = 1;
  std::set<std::int32_t> withShortcut_;  // as panels know it
  bool isOpen_ = false;
  std::chrono::steady_clock::time_point openedAt_{};
  std::unique_ptr<Timer> closing_;
};

}  // namespace kestro
