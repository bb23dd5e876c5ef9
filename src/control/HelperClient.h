// The running helper, asked over the session bus. Every call waits for its answer, five seconds at
// most, and starts no helper.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "linux/session/Bus.h"

namespace kestro {

struct HelperStatus {
  bool isTracking = false;
  std::int64_t pausedUntil = 0;   // seconds since 1970; 0: no timed pause
  std::int64_t timerStarted = 0;  // the same; 0: no timer runs
  bool isInCall = false;
  std::uint32_t trackedToday = 0;  // seconds
  std::string version;
};

struct NoHelper {};
struct HelperFailure {
  std::string reason;  // a sentence for people
};
template <class Value>
using HelperAnswer = std::variant<Value, NoHelper, HelperFailure>;
struct Done {};

class HelperClient {
 public:
  HelperClient();

  HelperAnswer<HelperStatus> status();
  HelperAnswer<Done> pause(std::uint32_t seconds);
  HelperAnswer<Done> resume();
  HelperAnswer<Done> startTimer(const std::string& title, const std::string& project);
  HelperAnswer<Done> stopTimer();
  HelperAnswer<Done> openAddress(const std::string& address);

 private:
  using Writer = std::function<void(sd_bus_message* message)>;
  HelperAnswer<MessagePointer> call(const char* interface, const char* member,
                                    const Writer& writer);
  HelperAnswer<Done> command(const char* member, const Writer& writer);

  BusPointer bus_;
};

}  // namespace kestro
