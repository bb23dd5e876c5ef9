// A connection to the user's session bus or to the system's bus, served by the run loop. A bus that
// goes away is connected to again, with growing delays; whoever puts something on the bus does so
// anew on each connection. Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "linux/process/BackOff.h"
#include "linux/process/LinuxRunLoop.h"
#include "linux/session/Bus.h"
#include "platform/SystemLog.h"

namespace kestro {

// An entry of a connection (an object, a match, a call under way), which ends with it.
struct SlotDeleter {
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
using SlotPointer = std::unique_ptr<sd_bus_slot, SlotDeleter>;

class BusConnection {
 public:
  using Connected = std::function<void(sd_bus* bus)>;
  using Lost = std::function<void()>;

  // Tries to connect before it returns.
  BusConnection(BusKind kind, LinuxRunLoop& runLoop, SystemLog& log);
  ~BusConnection();
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

  // Null: there is none now.
  sd_bus* get() const { return bus_.get(); }

  // `connected` is called at once when there is a connection, and for every later one; `lost` when
  // one has ended, before it is closed. Both must stay callable until the bus object is destroyed
  // or `forget` was called with the same owner.
  void watch(const void* owner, Connected connected, Lost lost);
  void forget(const void* owner);

 private:
  struct Watcher {
    const void* owner;
    Connected connected;
    Lost lost;
  };
  static int onDisconnected(sd_bus_message* message, void* connection, sd_bus_error* error);
  void connect();
  void disconnect();

  BusKind kind_;
  LinuxRunLoop& runLoop_;
  SystemLog& log_;
  BackOff backOff_{std::chrono::seconds(1), std::chrono::seconds(30)};
  bool hasLoggedAbsence_ = false;
  std::vector<Watcher> watchers_;
  std::unique_ptr<Timer> retry_;
  SlotPointer disconnection_;
  BusPointer bus_;
};

}  // namespace kestro
