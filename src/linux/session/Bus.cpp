#include "linux/session/Bus.h"

namespace kestro {
namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

bool waitUntilReady(sd_bus* bus, microseconds timeout) {
  const auto deadline = steady_clock::now() + timeout;
  while (true) {
    const int ready = sd_bus_is_ready(bus);
    if (ready != 0) return ready > 0;
    const int processed = sd_bus_process(bus, nullptr);
    if (processed < 0) return false;
    if (processed > 0) continue;
    const auto left = std::chrono::duration_cast<microseconds>(deadline - steady_clock::now());
    if (left.count() <= 0) return false;
    if (sd_bus_wait(bus, static_cast<std::uint64_t>(left.count())) < 0) return false;
  }
}

BusPointer startBus(const char* address) {
  sd_bus* bus = nullptr;
  if (!address) {
    sd_bus_open_user(&bus);
    return BusPointer(bus);
  }
  if (sd_bus_new(&bus) < 0) return nullptr;
  BusPointer owner(bus);
  const bool isStarted = sd_bus_set_address(bus, address) >= 0 &&
                         sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_start(bus) >= 0;
  return isStarted ? std::move(owner) : nullptr;
}

}  // namespace

BusPointer openBus(const char* address, microseconds timeout) {
  BusPointer bus = startBus(address);
  if (!bus || !waitUntilReady(bus.get(), timeout)) return nullptr;
  return bus;
}

}  // namespace kestro
