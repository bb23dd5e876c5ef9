// Owning handles of sd-bus, and the opening of connections with a bound on the wait: sd-bus itself
// waits without one for a bus that accepts connections and says nothing.
#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
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

// A ready connection to the bus at `address` (null: the session bus), or null.
BusPointer openBus(const char* address, std::chrono::microseconds timeout);

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
