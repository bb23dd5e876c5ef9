#include "linux/shell/LinuxScripting.h"

#include <strings.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include "foundation/Utf8.h"

namespace kestro {
namespace {

constexpr const char* helperName = "com.kestro.KestroHelper";
constexpr const char* helperObject = "/com/kestro/KestroHelper";
constexpr const char* helperInterface = "com.kestro.KestroHelper1";
constexpr const char* noTimerError = "com.kestro.KestroHelper1.Error.NoTimer";
constexpr const char* noDatabaseError = "com.kestro.KestroHelper1.Error.NoDatabase";
constexpr const char* invalidArgumentError = "com.kestro.KestroHelper1.Error.InvalidArgument";
constexpr const char* notReadyError = "com.kestro.KestroHelper1.Error.NotReady";
constexpr std::size_t longestText = 10'000;  // bytes of a title or a project

std::int64_t secondsSince1970(std::optional<Date> date) {
  if (!date) return 0;
  return std::chrono::floor<std::chrono::seconds>(*date).time_since_epoch().count();
}

template <int (LinuxScripting::*method)(sd_bus_message*, sd_bus_error*)>
int onCall(sd_bus_message* call, void* scripting, sd_bus_error* error) {
  try {
    return (static_cast<LinuxScripting*>(scripting)->*method)(call, error);
  } catch (const std::exception&) {
    return sd_bus_error_set(error, SD_BUS_ERROR_FAILED, "The helper could not do that.");
  }
}

int onProperty(sd_bus*, const char*, const char*, const char* property, sd_bus_message* reply,
               void* scripting, sd_bus_error*) {
  try {
    return static_cast<LinuxScripting*>(scripting)->readProperty(property, reply);
  } catch (const std::exception&) {
    return -EIO;
  }
}

constexpr auto announced = SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE;
const std::array helperMembers{
    sd_bus_vtable SD_BUS_VTABLE_START(0),
    sd_bus_vtable SD_BUS_METHOD_WITH_ARGS("Pause", SD_BUS_ARGS("u", seconds), SD_BUS_NO_RESULT,
                                          onCall<&LinuxScripting::pause>,
                                          SD_BUS_VTABLE_UNPRIVILEGED),
    sd_bus_vtable SD_BUS_METHOD_WITH_ARGS("Resume", SD_BUS_NO_ARGS, SD_BUS_NO_RESULT,
                                          onCall<&LinuxScripting::resume>,
                                          SD_BUS_VTABLE_UNPRIVILEGED),
    sd_bus_vtable SD_BUS_METHOD_WITH_ARGS("StartTimer", SD_BUS_ARGS("s", title, "s", project),
                                          SD_BUS_NO_RESULT, onCall<&LinuxScripting::startTimer>,
                                          SD_BUS_VTABLE_UNPRIVILEGED),
    sd_bus_vtable SD_BUS_METHOD_WITH_ARGS("StopTimer", SD_BUS_NO_ARGS, SD_BUS_NO_RESULT,
                                          onCall<&LinuxScripting::stopTimer>,
                                          SD_BUS_VTABLE_UNPRIVILEGED),
    sd_bus_vtable SD_BUS_METHOD_WITH_ARGS("OpenURL", SD_BUS_ARGS("s", address), SD_BUS_NO_RESULT,
                                          onCall<&LinuxScripting::openAddress>,
                                          SD_BUS_VTABLE_UNPRIVILEGED),
    sd_bus_vtable SD_BUS_PROPERTY("Tracking", "b", onProperty, 0, announced),
    sd_bus_vtable SD_BUS_PROPERTY("PausedUntil", "x", onProperty, 0, announced),
    sd_bus_vtable SD_BUS_PROPERTY("TimerRunning", "b", onProperty, 0, announced),
    sd_bus_vtable SD_BUS_PROPERTY("TimerStarted", "x", onProperty, 0, announced),
    sd_bus_vtable SD_BUS_PROPERTY("InCall", "b", onProperty, 0, announced),
    sd_bus_vtable SD_BUS_PROPERTY("TrackedToday", "u", onProperty, 0, 0),
    sd_bus_vtable SD_BUS_PROPERTY("Version", "s", onProperty, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    sd_bus_vtable SD_BUS_VTABLE_END,
};

}  // namespace

LinuxScripting::LinuxScripting(BusConnection& sessionBus, LinuxRunLoop& runLoop, SystemLog& log)
    : sessionBus_(sessionBus), runLoop_(runLoop), log_(log) {
  sessionBus_.watch(
      this,
      [this](sd_bus* bus) {
        sd_bus_slot* slot = nullptr;
        sd_bus_add_object_vtable(bus, &slot, helperObject, helperInterface, helperMembers.data(),
                                 this);
        object_.reset(slot);
        if (!claimsName_ || claimNameOn(bus)) return;
        log_.write("another helper serves this session now; this one ends");
        kill(getpid(), SIGTERM);
      },
      [this] { object_.reset(); });
}

LinuxScripting::~LinuxScripting() {
  sessionBus_.forget(this);
}

bool LinuxScripting::claimName() {
  claimsName_ = true;
  sd_bus* bus = sessionBus_.get();
  return !bus || claimNameOn(bus);
}

// Only a name that somebody else has is a reason not to run; a bus that refuses everything is none.
bool LinuxScripting::claimNameOn(sd_bus* bus) const {
  const int result = sd_bus_request_name(bus, helperName, 0);
  if (result < 0 && result != -EEXIST) {
    log_.write("the session bus gives the helper no name; commands do not reach it");
  }
  return result != -EEXIST;
}

void LinuxScripting::setCommandHandler(CommandHandler handler) {
  commandHandler_ = std::move(handler);
}

void LinuxScripting::setGetURLHandler(URLHandler handler) {
  urlHandler_ = std::move(handler);
}

void LinuxScripting::setDelegate(ControlDelegate* delegate) {
  delegate_ = delegate;
  statusMayHaveChanged();
}

void LinuxScripting::statusMayHaveChanged() {
  if (!delegate_) return;
  const ControlStatus now = delegate_->controlStatus();
  const ControlStatus before = std::exchange(told_, now);
  sd_bus* bus = sessionBus_.get();
  if (!bus || now == before) return;
  std::array<const char*, 6> changed{};
  std::size_t count = 0;
  if (now.isTracking != before.isTracking) changed[count++] = "Tracking";
  if (now.pausedUntil != before.pausedUntil) changed[count++] = "PausedUntil";
  if (now.timerStarted.has_value() != before.timerStarted.has_value()) {
    changed[count++] = "TimerRunning";
  }
  if (now.timerStarted != before.timerStarted) changed[count++] = "TimerStarted";
  if (now.isInCall != before.isInCall) changed[count++] = "InCall";
  std::array<char*, 6> names{};
  for (std::size_t index = 0; index < count; ++index)
    names[index] = const_cast<char*>(changed[index]);  // as the library's type has it; not written
  sd_bus_emit_properties_changed_strv(bus, helperObject, helperInterface, names.data());
}

int LinuxScripting::readProperty(std::string_view name, sd_bus_message* reply) {
  if (name == "Version") return sd_bus_message_append(reply, "s", KESTRO_VERSION);
  if (name == "TrackedToday") {
    const Seconds tracked = delegate_ ? delegate_->trackedTimeToday() : Seconds(0);
    return sd_bus_message_append(reply, "u", static_cast<std::uint32_t>(tracked.count()));
  }
  const ControlStatus status = delegate_ ? delegate_->controlStatus() : ControlStatus();
  if (name == "Tracking") return sd_bus_message_append(reply, "b", status.isTracking);
  if (name == "PausedUntil") {
    return sd_bus_message_append(reply, "x", secondsSince1970(status.pausedUntil));
  }
  if (name == "TimerRunning") {
    return sd_bus_message_append(reply, "b", status.timerStarted.has_value());
  }
  if (name == "TimerStarted") {
    return sd_bus_message_append(reply, "x", secondsSince1970(status.timerStarted));
  }
  return sd_bus_message_append(reply, "b", status.isInCall);
}

int LinuxScripting::refuseWhileStarting(sd_bus_error* error) const {
  return sd_bus_error_set(error, notReadyError,
                          "The helper is still starting: it may be waiting for an answer.");
}

int LinuxScripting::pause(sd_bus_message* call, sd_bus_error* error) {
  std::uint32_t seconds = 0;
  if (sd_bus_message_read(call, "u", &seconds) < 0) return -EINVAL;
  if (!commandHandler_) return refuseWhileStarting(error);
  commandHandler_("KSPauseTrackingCommand", {{"fors", static_cast<double>(seconds)}});
  return sd_bus_reply_method_return(call, "");
}

int LinuxScripting::resume(sd_bus_message* call, sd_bus_error* error) {
  if (!commandHandler_) return refuseWhileStarting(error);
  commandHandler_("KSResumeTrackingCommand", {});
  return sd_bus_reply_method_return(call, "");
}

int LinuxScripting::startTimer(sd_bus_message* call, sd_bus_error* error) {
  const char* title = nullptr;
  const char* project = nullptr;
  if (sd_bus_message_read(call, "ss", &title, &project) < 0) return -EINVAL;
  const std::string titleText = withoutControlCharacters(title);
  const std::string projectText = withoutControlCharacters(project);
  if (titleText.size() > longestText || projectText.size() > longestText) {
    return sd_bus_error_set(error, invalidArgumentError,
                            "A title or a project may have 10,000 bytes at most.");
  }
  if (!delegate_) return refuseWhileStarting(error);
  return answer(call, error, delegate_->startTimer(titleText, projectText));
}

int LinuxScripting::stopTimer(sd_bus_message* call, sd_bus_error* error) {
  if (!delegate_) return refuseWhileStarting(error);
  return answer(call, error, delegate_->stopTimer());
}

int LinuxScripting::answer(sd_bus_message* call, sd_bus_error* error, ControlOutcome outcome) {
  statusMayHaveChanged();
  switch (outcome) {
    case ControlOutcome::done:
      return sd_bus_reply_method_return(call, "");
    case ControlOutcome::noTimer:
      return sd_bus_error_set(error, noTimerError, "No timer is running.");
    case ControlOutcome::noDatabase:
      break;
  }
  return sd_bus_error_set(error, noDatabaseError, "There is no database to keep the timer in.");
}

// Handed over after the answer: what the address does may take its time.
int LinuxScripting::openAddress(sd_bus_message* call, sd_bus_error* error) {
  const char* address = nullptr;
  if (sd_bus_message_read(call, "s", &address) < 0) return -EINVAL;
  if (strncasecmp(address, "kestro:", 7) != 0) {
    return sd_bus_error_set(error, invalidArgumentError,
                            "Only addresses that begin with kestro: can be opened.");
  }
  if (!urlHandler_) return refuseWhileStarting(error);
  runLoop_.post([this, text = std::string(address)] {
    if (urlHandler_) urlHandler_(text);
  });
  return sd_bus_reply_method_return(call, "");
}

}  // namespace kestro
