// The connection to the accessibility bus. Every request has a timeout; one that an application
// lets pass makes all further requests to it fail at once, until something comes from it or a
// growing delay is over. A wait that the end of the sample cuts short says nothing about the
// application. Connects again by itself when the bus vanishes. Main thread only.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "linux/accessibility/AccessibilityStatus.h"
#include "linux/accessibility/AtspiObject.h"
#include "linux/process/BackOff.h"
#include "linux/process/Patience.h"
#include "linux/session/Bus.h"
#include "platform/Accessibility.h"

namespace kestro {

// An answer, or why there is none.
struct AtspiReply {
  MessagePointer message;  // null unless `error` is success
  AccessibilityError error = AccessibilityError::success;
};

class AtspiConnection {
 public:
  // `pay` is called for every message before it is sent (false: it must not be), and when a wait
  // was cut short.
  AtspiConnection(AccessibilityStatus& status, const Patience& patience, SystemLog& log,
                  std::function<bool()> pay)
      : status_(status), patience_(patience), log_(log), pay_(std::move(pay)) {}

  // Whether requests can be made now; connects when there is no connection and a try is due.
  bool isConnected();
  // Grows with every new connection: names of the bus are worth nothing on another.
  std::uint64_t connectionNumber() const { return connectionNumber_; }

  // A request to be filled with arguments; null without a connection.
  MessagePointer request(const AtspiObject& object, const char* interface, const char* member);
  AtspiReply call(const MessagePointer& request);
  // The same without an answer.
  void send(const MessagePointer& request);
  // The same for requests that are sent together. Replies are in the requests' order.
  std::vector<AtspiReply> callTogether(std::span<const MessagePointer> requests);

  // Takes what has arrived without being waited for, for a few milliseconds.
  void processArrived();

  // Whether requests to this peer fail at once.
  bool isSilenced(const std::string& busName) const;
  // Drops what is known of silences that are over, of peers that are none of these.
  void forgetSilencesExcept(const std::set<std::string>& busNames);

 private:
  static int onMessage(sd_bus_message* message, void* connection, sd_bus_error* error);
  bool connect();
  void disconnect();
  void logAbsence(std::string_view line);
  void noteSuccess();
  AccessibilityError admit(const MessagePointer& request);
  void callSome(std::span<const MessagePointer> requests, std::span<AtspiReply> replies);
  void noteAnswer(const std::string& busName) { silences_.erase(busName); }
  void noteTimeout(const std::string& busName);
  AccessibilityError noteError(const std::string& busName, int result, const sd_bus_error* error);

  AccessibilityStatus& status_;
  const Patience& patience_;
  SystemLog& log_;
  std::function<bool()> pay_;
  BackOff backOff_{std::chrono::seconds(1), std::chrono::seconds(30)};
  bool hasLoggedAbsence_ = false;
  BusPointer bus_;
  std::uint64_t connectionNumber_ = 0;
  std::map<std::string, BackOff> silences_;  // by unique bus name
};

// The one place where errors of the bus become the accessibility interface's. `result` is negative.
AccessibilityError accessibilityError(int result, const char* errorName);

}  // namespace kestro
