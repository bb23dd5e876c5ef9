#include "linux/accessibility/AccessibilityStatus.h"

namespace kestro {
namespace {

using std::chrono::steady_clock;

constexpr const char* service = "org.a11y.Bus";
constexpr const char* launcherObject = "/org/a11y/bus";
constexpr const char* statusInterface = "org.a11y.Status";
constexpr const char* enabledProperty = "IsEnabled";
constexpr std::chrono::seconds longestTrust{10};

MessagePointer propertyCall(sd_bus* bus, const char* member) {
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(bus, &message, service, launcherObject,
                                 "org.freedesktop.DBus.Properties", member);
  MessagePointer owner(message);
  if (message) sd_bus_message_append(message, "ss", statusInterface, enabledProperty);
  return owner;
}

}  // namespace

bool AccessibilityStatus::isConnected() {
  if (bus_ && sd_bus_is_open(bus_.get()) <= 0) bus_.reset();
  const auto now = steady_clock::now();
  if (!backOff_.isDue(now) || patience_.isOver()) return false;
  if (bus_) return true;
  bus_ = openBus(nullptr, patience_.forRequest());
  if (!bus_) noteFailure(-ENOTCONN);
  return bus_ != nullptr;
}

void AccessibilityStatus::noteFailure(int result) {
  backOff_.noteFailure(steady_clock::now());
  if (bus_ && sd_bus_is_open(bus_.get()) <= 0) bus_.reset();
  if (!hasLoggedAbsence_) {
    log_.write(result == -ENOTCONN ? "no session bus; other applications cannot be read"
                                   : "the session has no accessibility service; other applications "
                                     "cannot be read");
  }
  hasLoggedAbsence_ = true;
}

// A service that refuses the switch may still give an address; one that is silent or gone does not.
void AccessibilityStatus::noteSilence(int result) {
  if (result == -ETIMEDOUT || sd_bus_is_open(bus_.get()) <= 0) noteFailure(result);
}

std::optional<std::string> AccessibilityStatus::busAddress() {
  if (!isConnected()) return std::nullopt;
  sd_bus_message* request = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &request, service, launcherObject, service,
                                 "GetAddress");
  const MessagePointer owner(request);
  MessagePointer reply;
  const int result = callBus(bus_.get(), owner, patience_.forRequest(), reply);
  const char* address = nullptr;
  if (result < 0 || sd_bus_message_read(reply.get(), "s", &address) <= 0 || !*address) {
    noteFailure(result);
    return std::nullopt;
  }
  backOff_.noteSuccess();
  hasLoggedAbsence_ = false;
  return address;
}

bool AccessibilityStatus::isEnabled() {
  const auto now = steady_clock::now();
  if (now - asked_ < longestTrust) return isEnabled_;
  asked_ = now;
  isEnabled_ = false;
  if (!isConnected()) return false;
  MessagePointer reply;
  const int result =
      callBus(bus_.get(), propertyCall(bus_.get(), "Get"), patience_.forRequest(), reply);
  if (result < 0) {
    noteSilence(result);
    return false;
  }
  int value = 0;
  isEnabled_ = sd_bus_message_read(reply.get(), "v", "b", &value) > 0 && value != 0;
  return isEnabled_;
}

void AccessibilityStatus::enable() {
  // Not connected also after the question for it has failed: one wait is enough.
  if (isEnabled() || !isConnected()) return;
  const MessagePointer request = propertyCall(bus_.get(), "Set");
  MessagePointer reply;
  if (!request || sd_bus_message_append(request.get(), "v", "b", 1) < 0) return;
  const int result = callBus(bus_.get(), request, patience_.forRequest(), reply);
  isEnabled_ = result >= 0;
  if (result < 0) noteSilence(result);
}

}  // namespace kestro
