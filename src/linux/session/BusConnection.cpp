#include "linux/session/BusConnection.h"

#include <algorithm>
#include <utility>

namespace kestro {
namespace {

constexpr std::chrono::milliseconds longestConnecting{1000};

}  // namespace

BusConnection::BusConnection(BusKind kind, LinuxRunLoop& runLoop, SystemLog& log)
    : kind_(kind), runLoop_(runLoop), log_(log) {
  connect();
}

BusConnection::~BusConnection() {
  disconnection_.reset();
  if (bus_) sd_bus_detach_event(bus_.get());
}

void BusConnection::connect() {
  retry_.reset();
  bus_ = openBus(kind_, longestConnecting);
  if (!bus_ || sd_bus_attach_event(bus_.get(), runLoop_.event(), SD_EVENT_PRIORITY_NORMAL) < 0) {
    bus_.reset();
    backOff_.noteFailure(std::chrono::steady_clock::now());
    if (!hasLoggedAbsence_) {
      log_.write(kind_ == BusKind::session
                     ? "no session bus; tray, notifications and commands have to wait for one"
                     : "no system bus; what programs keep the machine awake is unknown");
    }
    hasLoggedAbsence_ = true;
    retry_ = runLoop_.scheduleAfter(backOff_.delay(), [this] { connect(); });
    return;
  }
  backOff_.noteSuccess();
  if (hasLoggedAbsence_) {
    log_.write(kind_ == BusKind::session ? "the session bus is there again"
                                         : "the system bus is there again");
  }
  hasLoggedAbsence_ = false;
  sd_bus_slot* slot = nullptr;
  sd_bus_match_signal(bus_.get(), &slot, "org.freedesktop.DBus.Local",
                      "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected",
                      onDisconnected, this);
  disconnection_.reset(slot);
  const auto watchers = watchers_;
  for (const Watcher& watcher : watchers)
    watcher.connected(bus_.get());
}

// The connection cannot go while it calls this.
int BusConnection::onDisconnected(sd_bus_message*, void* connection, sd_bus_error*) {
  auto* self = static_cast<BusConnection*>(connection);
  self->runLoop_.post([self] { self->disconnect(); });
  return 0;
}

void BusConnection::disconnect() {
  if (!bus_) return;
  const auto watchers = watchers_;
  for (const Watcher& watcher : watchers)
    watcher.lost();
  disconnection_.reset();
  sd_bus_detach_event(bus_.get());
  bus_.reset();
  connect();
}

void BusConnection::watch(const void* owner, Connected connected, Lost lost) {
  watchers_.push_back({owner, std::move(connected), std::move(lost)});
  if (!bus_) return;
  const Connected call = watchers_.back().connected;
  call(bus_.get());
}

void BusConnection::forget(const void* owner) {
  std::erase_if(watchers_, [&](const Watcher& watcher) { return watcher.owner == owner; });
}

}  // namespace kestro
