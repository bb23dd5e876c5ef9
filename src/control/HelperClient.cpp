#include "control/HelperClient.h"

#include <cerrno>
#include <string_view>

namespace kestro {
namespace {

constexpr const char* helperName = "com.kestro.KestroHelper";
constexpr const char* helperObject = "/com/kestro/KestroHelper";
constexpr const char* helperInterface = "com.kestro.KestroHelper1";
constexpr std::chrono::seconds longestAnswer{5};

bool isNobodyThere(const sd_bus_error* error) {
  return sd_bus_error_has_name(error, SD_BUS_ERROR_SERVICE_UNKNOWN) ||
         sd_bus_error_has_name(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER);
}

void takeProperty(HelperStatus& status, std::string_view name, sd_bus_message* message) {
  int flag = 0;
  const char* text = nullptr;
  if (name == "Tracking" && sd_bus_message_read(message, "v", "b", &flag) > 0) {
    status.isTracking = flag != 0;
  } else if (name == "InCall" && sd_bus_message_read(message, "v", "b", &flag) > 0) {
    status.isInCall = flag != 0;
  } else if (name == "PausedUntil") {
    sd_bus_message_read(message, "v", "x", &status.pausedUntil);
  } else if (name == "TimerStarted") {
    sd_bus_message_read(message, "v", "x", &status.timerStarted);
  } else if (name == "TrackedToday") {
    sd_bus_message_read(message, "v", "u", &status.trackedToday);
  } else if (name == "Version" && sd_bus_message_read(message, "v", "s", &text) > 0) {
    status.version = text;
  } else {
    sd_bus_message_skip(message, "v");
  }
}

}  // namespace

HelperClient::HelperClient() : bus_(openBus(BusKind::session, longestAnswer)) {}

HelperAnswer<MessagePointer> HelperClient::call(const char* interface, const char* member,
                                                const Writer& writer) {
  if (!bus_) return NoHelper{};
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &message, helperName, helperObject, interface, member);
  const MessagePointer request(message);
  if (!request) return HelperFailure{"the call cannot be made"};
  sd_bus_message_set_auto_start(message, 0);
  writer(message);
  MessagePointer reply;
  const int result = callBus(bus_.get(), request, longestAnswer, reply);
  if (result >= 0) return reply;
  const sd_bus_error* error = reply ? sd_bus_message_get_error(reply.get()) : nullptr;
  if (!error) return HelperFailure{"the helper does not answer"};
  if (isNobodyThere(error)) return NoHelper{};
  return HelperFailure{error->message ? error->message : "the helper refuses"};
}

HelperAnswer<HelperStatus> HelperClient::status() {
  auto answer = call("org.freedesktop.DBus.Properties", "GetAll", [](sd_bus_message* message) {
    sd_bus_message_append(message, "s", helperInterface);
  });
  if (std::holds_alternative<NoHelper>(answer)) return NoHelper{};
  if (auto* failure = std::get_if<HelperFailure>(&answer)) return std::move(*failure);
  sd_bus_message* reply = std::get<MessagePointer>(answer).get();
  HelperStatus status;
  if (sd_bus_message_enter_container(reply, 'a', "{sv}") <= 0) {
    return HelperFailure{"the helper's answer cannot be understood"};
  }
  while (sd_bus_message_enter_container(reply, 'e', "sv") > 0) {
    const char* name = nullptr;
    if (sd_bus_message_read(reply, "s", &name) <= 0) break;
    takeProperty(status, name, reply);
    sd_bus_message_exit_container(reply);
  }
  return status;
}

HelperAnswer<Done> HelperClient::command(const char* member, const Writer& writer) {
  auto answer = call(helperInterface, member, writer);
  if (std::holds_alternative<NoHelper>(answer)) return NoHelper{};
  if (auto* failure = std::get_if<HelperFailure>(&answer)) return std::move(*failure);
  return Done{};
}

HelperAnswer<Done> HelperClient::pause(std::uint32_t seconds) {
  return command("Pause",
                 [=](sd_bus_message* message) { sd_bus_message_append(message, "u", seconds); });
}

HelperAnswer<Done> HelperClient::resume() {
  return command("Resume", [](sd_bus_message*) {});
}

HelperAnswer<Done> HelperClient::startTimer(const std::string& title, const std::string& project) {
  return command("StartTimer", [&](sd_bus_message* message) {
    sd_bus_message_append(message, "ss", title.c_str(), project.c_str());
  });
}

HelperAnswer<Done> HelperClient::stopTimer() {
  return command("StopTimer", [](sd_bus_message*) {});
}

HelperAnswer<Done> HelperClient::openAddress(const std::string& address) {
  return command("OpenURL", [&](sd_bus_message* message) {
    sd_bus_message_append(message, "s", address.c_str());
  });
}

}  // namespace kestro
