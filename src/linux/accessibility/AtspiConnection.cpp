#include "linux/accessibility/AtspiConnection.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

namespace kestro {
namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr std::string_view timeoutError = "org.freedesktop.DBus.Error.Timeout";
constexpr std::string_view noReplyError = "org.freedesktop.DBus.Error.NoReply";
// What arrives without being waited for is late answers. Large ones of an application that floods
// the bus are taken a little at a time.
constexpr std::chrono::milliseconds longestTaking{20};
// Requests that may be under way at one time: an application's answers are as large as it likes.
constexpr std::size_t mostUnderWay = 64;

std::string destinationOf(const MessagePointer& request) {
  const char* name = sd_bus_message_get_destination(request.get());
  return name ? name : "";
}

std::uint64_t microsecondCount(microseconds duration) {
  return static_cast<std::uint64_t>(duration.count());
}

// Requests that are under way together.
struct Batch {
  struct Call {
    Batch* batch = nullptr;
    MessagePointer reply;
    sd_bus_slot* slot = nullptr;
    steady_clock::duration waited{};  // until the reply came
  };

  explicit Batch(std::size_t count) : calls(count) {
    for (Call& call : calls)
      call.batch = this;
  }
  ~Batch() {
    for (Call& call : calls)
      sd_bus_slot_unref(call.slot);
  }
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;

  static int onReply(sd_bus_message* message, void* context, sd_bus_error*) {
    auto* call = static_cast<Call*>(context);
    call->reply.reset(sd_bus_message_ref(message));
    call->waited = steady_clock::now() - call->batch->start;
    --call->batch->pending;
    return 0;
  }

  std::vector<Call> calls;
  std::size_t pending = 0;
  steady_clock::time_point start = steady_clock::now();
};

// libsystemd ends a call whose time is over with the error that a bus gives, earlier, for a peer
// that went away.
bool hasTimedOut(const Batch::Call& call, microseconds timeout) {
  const auto* error = call.reply ? sd_bus_message_get_error(call.reply.get()) : nullptr;
  return error && error->name && noReplyError == error->name && call.waited >= timeout;
}

}  // namespace

AccessibilityError accessibilityError(int result, const char* errorName) {
  struct Row {
    std::string_view name;
    AccessibilityError error;
  };
  static constexpr Row rows[]{
      {"org.freedesktop.DBus.Error.UnknownObject", AccessibilityError::invalidUIElement},
      {"org.freedesktop.DBus.Error.UnknownMethod", AccessibilityError::attributeUnsupported},
      {"org.freedesktop.DBus.Error.UnknownInterface", AccessibilityError::attributeUnsupported},
      {"org.freedesktop.DBus.Error.UnknownProperty", AccessibilityError::attributeUnsupported},
      {"org.freedesktop.DBus.Error.NotSupported", AccessibilityError::attributeUnsupported},
      {"org.freedesktop.DBus.Error.InvalidArgs", AccessibilityError::illegalArgument},
      {"org.freedesktop.DBus.Error.AccessDenied", AccessibilityError::apiDisabled},
      {timeoutError, AccessibilityError::cannotComplete},
      {noReplyError, AccessibilityError::cannotComplete},
      {"org.freedesktop.DBus.Error.ServiceUnknown", AccessibilityError::cannotComplete},
      {"org.freedesktop.DBus.Error.NameHasNoOwner", AccessibilityError::cannotComplete},
      {"org.freedesktop.DBus.Error.Disconnected", AccessibilityError::cannotComplete},
  };
  if (errorName) {
    const auto* row = std::ranges::find(rows, std::string_view(errorName), &Row::name);
    if (row != std::end(rows)) return row->error;
  }
  const bool isLoss = result == -ECONNRESET || result == -ENOTCONN || result == -EPIPE ||
                      result == -ETIMEDOUT || result == -ESHUTDOWN;
  return isLoss ? AccessibilityError::cannotComplete : AccessibilityError::failure;
}

bool AtspiConnection::isConnected() {
  if (bus_ && sd_bus_is_open(bus_.get()) <= 0) disconnect();
  return bus_ || (!patience_.isOver() && connect());
}

bool AtspiConnection::connect() {
  const auto now = steady_clock::now();
  if (!backOff_.isDue(now)) return false;
  status_.enable();
  const auto address = status_.busAddress();
  bus_ = address ? openBus(address->c_str(), patience_.forRequest()) : nullptr;
  if (!bus_) {
    if (address) logAbsence("the accessibility bus does not answer");
    backOff_.noteFailure(steady_clock::now());
    return false;
  }
  ++connectionNumber_;
  sd_bus_add_filter(bus_.get(), nullptr, onMessage, this);
  return true;
}

void AtspiConnection::disconnect() {
  bus_.reset();
  silences_.clear();
  // The bus may come back at once, but not under a helper that hammers at it.
  backOff_.noteFailure(steady_clock::now());
  logAbsence("the accessibility bus is gone");
}

void AtspiConnection::logAbsence(std::string_view line) {
  if (!hasLoggedAbsence_) log_.write(line);
  hasLoggedAbsence_ = true;
}

// A bus that takes connections and loses them again has not come back before it has carried a
// request.
void AtspiConnection::noteSuccess() {
  backOff_.noteSuccess();
  hasLoggedAbsence_ = false;
}

void AtspiConnection::forgetSilencesExcept(const std::set<std::string>& busNames) {
  const auto now = steady_clock::now();
  std::erase_if(silences_, [&](const auto& silence) {
    return silence.second.isDue(now) && !busNames.contains(silence.first);
  });
}

MessagePointer AtspiConnection::request(const AtspiObject& object, const char* interface,
                                        const char* member) {
  if (!isConnected()) return nullptr;
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &message, object.busName.c_str(), object.path.c_str(),
                                 interface, member);
  return MessagePointer(message);
}

// A late answer of an application that had let a timeout pass: it lives again.
int AtspiConnection::onMessage(sd_bus_message* message, void* connection, sd_bus_error*) {
  const char* sender = sd_bus_message_get_sender(message);
  if (sender) static_cast<AtspiConnection*>(connection)->noteAnswer(sender);
  return 0;
}

void AtspiConnection::processArrived() {
  const auto end = steady_clock::now() + longestTaking;
  while (bus_ && steady_clock::now() < end) {
    if (sd_bus_process(bus_.get(), nullptr) <= 0) break;
  }
  if (bus_ && sd_bus_is_open(bus_.get()) <= 0) disconnect();
}

bool AtspiConnection::isSilenced(const std::string& busName) const {
  const auto found = silences_.find(busName);
  return found != silences_.end() && !found->second.isDue(steady_clock::now());
}

void AtspiConnection::noteTimeout(const std::string& busName) {
  auto& silence = silences_.try_emplace(busName, std::chrono::seconds(1), std::chrono::seconds(60))
                      .first->second;
  silence.noteFailure(steady_clock::now());
}

AccessibilityError AtspiConnection::admit(const MessagePointer& request) {
  const bool isPossible = request && bus_ && !patience_.isOver();
  if (!isPossible || isSilenced(destinationOf(request)) || !pay_()) {
    return AccessibilityError::cannotComplete;
  }
  return AccessibilityError::success;
}

AccessibilityError AtspiConnection::noteError(const std::string& busName, int result,
                                              const sd_bus_error* error) {
  const char* name = error ? error->name : nullptr;
  // The application says itself that it takes too long.
  if (name && timeoutError == name) noteTimeout(busName);
  if (sd_bus_is_open(bus_.get()) <= 0) disconnect();
  return accessibilityError(result, name);
}

AtspiReply AtspiConnection::call(const MessagePointer& request) {
  return std::move(callTogether({&request, 1}).front());
}

void AtspiConnection::send(const MessagePointer& request) {
  if (admit(request) != AccessibilityError::success) return;
  sd_bus_send(bus_.get(), request.get(), nullptr);
}

std::vector<AtspiReply> AtspiConnection::callTogether(std::span<const MessagePointer> requests) {
  std::vector<AtspiReply> replies(requests.size());
  for (std::size_t first = 0; first < requests.size(); first += mostUnderWay) {
    const std::size_t count = std::min(mostUnderWay, requests.size() - first);
    callSome(requests.subspan(first, count), std::span(replies).subspan(first, count));
  }
  return replies;
}

void AtspiConnection::callSome(std::span<const MessagePointer> requests,
                               std::span<AtspiReply> replies) {
  const microseconds timeout = patience_.forRequest();
  Batch batch(requests.size());
  for (std::size_t index = 0; index < requests.size(); ++index) {
    replies[index].error = admit(requests[index]);
    if (replies[index].error != AccessibilityError::success) continue;
    Batch::Call& call = batch.calls[index];
    const int result = sd_bus_call_async(bus_.get(), &call.slot, requests[index].get(),
                                         Batch::onReply, &call, microsecondCount(timeout));
    if (result >= 0) ++batch.pending;
  }
  // A little more than the calls' own timeout, so that they end by it.
  constexpr std::chrono::milliseconds margin{50};
  if (batch.pending > 0) {
    serveBus(bus_.get(), timeout + margin, [&] { return batch.pending == 0; });
  }
  const bool isTimeOver = patience_.isOver();
  bool isCutShort = false;
  std::set<std::string> silent;  // noted once, however many of its calls timed out
  for (std::size_t index = 0; index < requests.size(); ++index) {
    MessagePointer& answer = batch.calls[index].reply;
    if (replies[index].error != AccessibilityError::success) continue;
    const std::string busName = destinationOf(requests[index]);
    if (!bus_ || !answer) {
      replies[index].error = AccessibilityError::cannotComplete;
      isCutShort = true;
    } else if (const auto* error = sd_bus_message_get_error(answer.get())) {
      const bool hasWaited = hasTimedOut(batch.calls[index], timeout);
      if (hasWaited && isTimeOver) isCutShort = true;
      if (hasWaited && !isTimeOver) silent.insert(busName);
      replies[index].error = noteError(busName, -EIO, error);
    } else {
      noteSuccess();
      noteAnswer(busName);
      replies[index].message = std::move(answer);
    }
  }
  if (isTimeOver && isCutShort) pay_();
  for (const std::string& busName : silent)
    noteTimeout(busName);
}

}  // namespace kestro
