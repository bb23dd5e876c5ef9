// The connection to the accessibility bus. Every request has a timeout; one that an application
// lets pass makes all further requests to it fail at once, until something comes from it or a
// growing delay is over. Connects again by itself when the bus vanishes. Main thread only.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "linux/accessibility/AccessibilityStatus.h"
#include "linux/accessibility/AtspiObject.h"
#include "linux/process/BackOff.h"
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
  // `onRequest` is called for every message that is sent.
  AtspiConnection(AccessibilityStatus& status, SystemLog& log, std::function<void()> onRequest)
      : status_(status), log_(log), onRequest_(std::move(onRequest)) {}

  // Bounds each later request.
  void setTimeout(std::chrono::microseconds timeout);

  // Whether requests can be made now; connects when there is no connection and a try is due.
  bool isConnected();
  // Grows with every new connection: names of the bus are worth nothing on another.
  std::uint64_t connectionNumber() const { return connectionNumber_; }

  // A request to be filled with arguments; null without a connection.
  MessagePointer request(const AtspiObject& object, const char* interface, const char* member);
  AtspiReply call(const MessagePointer& request);
  // The same for requests that are sent together. Replies are in the requests' order.
  std::vector<AtspiReply> callTogether(const std::vector<MessagePointer>& requests);

  // Takes what has arrived without being waited for.
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
  void noteAnswer(const std::string& busName) { silences_.erase(busName); }
  void noteTimeout(const std::string& busName);
  AccessibilityError noteError(const std::string& busName, int result, const sd_bus_error* error);

  AccessibilityStatus& status_;
  SystemLog& log_;
  std::function<void()> onRequest_;
  std::chrono::microseconds timeout_{std::chrono::seconds(2)};
  BackOff backOff_{std::chrono::seconds(1), std::chrono::seconds(30)};
  bool hasLoggedAbsence_ = false;
  BusPointer bus_;
  std::uint64_t connectionNumber_ = 0;
  std::map<std::string, BackOff> silences_;  // by unique bus name
};

// The one place where errors of the bus become the accessibility interface's. `result` is negative.
AccessibilityError accessibilityError(int result, const char* errorName);

}  // namespace kestro
