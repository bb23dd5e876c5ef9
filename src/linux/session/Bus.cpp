#include "linux/session/Bus.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>

#include "linux/process/TerminationSignals.h"

namespace kestro {
namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

// A bus that was started anew in the place of another has another identifier, and is as good: the
// address without that.
std::optional<std::string> sessionAddressWithoutIdentifier() {
  const char* given = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  std::string address = given ? given : "";
  const std::size_t begin = address.find(",guid=");
  if (begin == std::string::npos) return std::nullopt;
  const std::size_t end = std::min(address.find_first_of(",;", begin + 1), address.size());
  return address.erase(begin, end - begin);
}

BusPointer startBus(const char* address) {
  sd_bus* bus = nullptr;
  const auto session = address ? std::nullopt : sessionAddressWithoutIdentifier();
  if (session) address = session->c_str();
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

BusPointer whenReady(BusPointer bus, microseconds timeout) {
  if (!bus) return nullptr;
  const auto isReady = [&] { return sd_bus_is_ready(bus.get()) > 0; };
  return serveBus(bus.get(), timeout, isReady) ? std::move(bus) : nullptr;
}

}  // namespace

BusPointer openBus(const char* address, microseconds timeout) {
  return whenReady(startBus(address), timeout);
}

BusPointer openBus(BusKind kind, microseconds timeout) {
  if (kind == BusKind::session) return openBus(nullptr, timeout);
  sd_bus* bus = nullptr;
  sd_bus_open_system(&bus);
  return whenReady(BusPointer(bus), timeout);
}

bool serveBus(sd_bus* bus, microseconds longest, const std::function<bool()>& isDone) {
  const auto deadline = steady_clock::now() + longest;
  while (!isDone()) {
    const auto left = std::chrono::duration_cast<microseconds>(deadline - steady_clock::now());
    if (left.count() <= 0 || isTerminationPending()) return false;
    const int processed = sd_bus_process(bus, nullptr);
    if (processed < 0) return false;
    if (processed > 0) continue;
    const auto turn = std::min<microseconds>(left, longestWaitingTurn);
    if (sd_bus_wait(bus, static_cast<std::uint64_t>(turn.count())) < 0) return false;
  }
  return true;
}

int callBus(sd_bus* bus, const MessagePointer& request, microseconds timeout,
            MessagePointer& reply) {
  if (!request) return -ENOMEM;
  sd_bus_slot* slot = nullptr;
  const auto keepReply = [](sd_bus_message* message, void* kept, sd_bus_error*) {
    static_cast<MessagePointer*>(kept)->reset(sd_bus_message_ref(message));
    return 0;
  };
  const int result = sd_bus_call_async(bus, &slot, request.get(), keepReply, &reply,
                                       static_cast<std::uint64_t>(timeout.count()));
  if (result < 0) return result;
  const bool isAnswered = serveBus(bus, timeout, [&] { return reply != nullptr; });
  sd_bus_slot_unref(slot);
  if (!isAnswered) return isTerminationPending() ? -ECANCELED : -ETIMEDOUT;
  return -sd_bus_message_get_errno(reply.get());
}

}  // namespace kestro
