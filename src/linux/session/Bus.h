// Owning handles of sd-bus, and the opening of connections with a bound on the wait: sd-bus itself
// waits without one for a bus that accepts connections and says nothing.
#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <functional>
#include <memory>

namespace kestro {

struct BusDeleter {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using BusPointer = std::unique_ptr<sd_bus, BusDeleter>;

struct MessageDeleter {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using MessagePointer = std::unique_ptr<sd_bus_message, MessageDeleter>;

enum class BusKind { session, system };

// A ready connection to the bus at `address` (null: the session bus), or null.
BusPointer openBus(const char* address, std::chrono::microseconds timeout);
BusPointer openBus(BusKind kind, std::chrono::microseconds timeout);

// Serves the connection until `isDone` says so. False when that is not reached: the time is over,
// the connection is lost, or a signal asks the helper to end.
bool serveBus(sd_bus* bus, std::chrono::microseconds longest, const std::function<bool()>& isDone);

// One call and its answer. Negative without one: the error of the call, as libsystemd numbers it
// (-ETIMEDOUT after `timeout`, -ECANCELED when a signal asks the helper to end).
int callBus(sd_bus* bus, const MessagePointer& request, std::chrono::microseconds timeout,
            MessagePointer& reply);

// The body of an error, freed when it goes.
class BusError {
 public:
  BusError() = default;
  ~BusError() { sd_bus_error_free(&error_); }
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;
  sd_bus_error* get() { return &error_; }

 private:
  sd_bus_error error_{};  // as SD_BUS_ERROR_NULL
};

}  // namespace kestro
