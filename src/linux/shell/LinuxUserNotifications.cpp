#include "linux/shell/LinuxUserNotifications.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "foundation/Utf8.h"

namespace kestro {
namespace {

constexpr const char* server = "org.freedesktop.Notifications";
constexpr const char* serverObject = "/org/freedesktop/Notifications";
constexpr const char* applicationName = "Kestro";
constexpr const char* desktopEntry = "com.kestro.KestroHelper";
constexpr const char* clickAction = "default";
constexpr std::chrono::microseconds longestCall = std::chrono::seconds(5);  // may start the server
// A server that announces an action and the closing does so at once, in either order.
constexpr Seconds actionMayFollow{0.3};
constexpr std::size_t longestShownText = 2'000;  // bytes
constexpr std::size_t mostRemembered = 50;

// Cut where a character begins.
std::string shortened(const std::string& text) {
  if (text.size() <= longestShownText) return text;
  std::size_t end = longestShownText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80)
    --end;
  return text.substr(0, end) + "…";
}

std::string escaped(const std::string& text) {
  std::string markup;
  for (const char character : text) {
    switch (character) {
      case '&':
        markup += "&amp;";
        break;
      case '<':
        markup += "&lt;";
        break;
      case '>':
        markup += "&gt;";
        break;
      default:
        markup += character;
    }
  }
  return markup;
}

MessagePointer serverCall(sd_bus* bus, const char* member) {
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(bus, &message, server, serverObject, server, member);
  return MessagePointer(message);
}

MessagePointer busCall(sd_bus* bus, const char* member) {
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(bus, &message, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus", member);
  return MessagePointer(message);
}

void appendActions(sd_bus_message* message, bool asks,
                   const std::vector<UserNotificationAction>& actions) {
  sd_bus_message_open_container(message, 'a', "s");
  if (asks) sd_bus_message_append(message, "ss", clickAction, applicationName);
  for (const UserNotificationAction& action : actions)
    sd_bus_message_append(message, "ss", action.identifier.c_str(), action.title.c_str());
  sd_bus_message_close_container(message);
}

void appendHints(sd_bus_message* message, bool playsSound) {
  sd_bus_message_open_container(message, 'a', "{sv}");
  sd_bus_message_append(message, "{sv}", "desktop-entry", "s", desktopEntry);
  if (playsSound) {
    sd_bus_message_append(message, "{sv}", "sound-name", "s", "message-new-instant");
  } else {
    sd_bus_message_append(message, "{sv}", "suppress-sound", "b", 1);
  }
  sd_bus_message_close_container(message);
}

std::vector<std::string> texts(sd_bus_message* message) {
  std::vector<std::string> list;
  if (sd_bus_message_enter_container(message, 'a', "s") <= 0) return list;
  const char* text = nullptr;
  while (sd_bus_message_read(message, "s", &text) > 0)
    list.emplace_back(text);
  return list;
}

bool holds(const std::vector<std::string>& list, std::string_view text) {
  return std::ranges::find(list, text) != list.end();
}

}  // namespace

// A call whose answer is still to come.
struct LinuxUserNotifications::Call {
  LinuxUserNotifications& owner;
  std::uint64_t number;
  Reply reply;
  SlotPointer slot;
};

LinuxUserNotifications::LinuxUserNotifications(BusConnection& sessionBus, LinuxRunLoop& runLoop,
                                               SystemLog& log, std::filesystem::path pendingFile)
    : sessionBus_(sessionBus), runLoop_(runLoop), pending_(std::move(pendingFile), log) {
  sessionBus_.watch(
      this, [this](sd_bus* bus) { connect(bus); }, [this] { disconnect(); });
}

LinuxUserNotifications::~LinuxUserNotifications() {
  sessionBus_.forget(this);
}

void LinuxUserNotifications::connect(sd_bus* bus) {
  bus_ = bus;
  const auto keep = [this](sd_bus_slot* slot) { slots_.emplace_back(slot); };
  sd_bus_slot* slot = nullptr;
  sd_bus_match_signal(bus, &slot, server, serverObject, server, "ActionInvoked", onAction, this);
  keep(std::exchange(slot, nullptr));
  sd_bus_match_signal(bus, &slot, server, serverObject, server, "NotificationClosed", onClosed,
                      this);
  keep(std::exchange(slot, nullptr));
  const std::string match =
      "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
      "member='NameOwnerChanged',arg0='" +
      std::string(server) + "'";
  sd_bus_add_match(bus, &slot, match.c_str(), onOwner, this);
  keep(slot);
  findServer(bus);
}

// Of the answers under way none will come.
void LinuxUserNotifications::disconnect() {
  slots_.clear();
  bus_ = nullptr;
  const auto calls = std::exchange(calls_, {});
  for (const auto& [number, call] : calls) {
    if (call->reply) call->reply(nullptr);
  }
}

// What was pending on another bus was part of another session, and is gone with it.
void LinuxUserNotifications::findServer(sd_bus* bus) {
  call(busCall(bus, "GetId"), longestCall, [this](sd_bus_message* reply) {
    const char* identifier = nullptr;
    if (!reply || sd_bus_message_read(reply, "s", &identifier) <= 0 || !bus_) return;
    if (pending_.server().bus != identifier) {
      const bool hadEntries = !pending_.entries().empty();
      pending_.entries().clear();
      pending_.setServer({identifier, ""});
      if (hadEntries) pending_.save();
    }
    const MessagePointer request = busCall(bus_, "GetNameOwner");
    if (!request) return;
    sd_bus_message_append(request.get(), "s", server);
    call(request, longestCall, [this](sd_bus_message* owner) {
      const char* name = nullptr;
      if (owner && sd_bus_message_read(owner, "s", &name) > 0) serverIs(name);
    });
  });
}

// The numbers of another server mean nothing to this one.
void LinuxUserNotifications::serverIs(std::string name) {
  if (name.empty() || pending_.server().name == name) return;
  pending_.setServer({pending_.server().bus, std::move(name)});
  closings_.clear();
  if (pending_.entries().empty()) return;
  for (PendingNotification& entry : pending_.entries()) {
    entry.number = 0;
    entry.isToBeShownAnew = true;
  }
  pending_.save();
  showAnew();
}

// Once the actions of its category are known, and in its old place where the server still has that.
void LinuxUserNotifications::showAnew() {
  const auto isDue = [this](const PendingNotification& entry) {
    return entry.isToBeShownAnew && categories_.contains(entry.notification.categoryIdentifier);
  };
  if (std::ranges::none_of(pending_.entries(), isDue)) return;
  requestPermission([this, isDue](bool isAllowed) {
    if (!isAllowed) return;
    std::vector<PendingNotification> due;
    std::ranges::copy_if(pending_.entries(), std::back_inserter(due), isDue);
    std::erase_if(pending_.entries(), isDue);
    for (PendingNotification& entry : due) {
      entry.isToBeShownAnew = false;
      show(entry);
    }
  });
}

void LinuxUserNotifications::setCategory(const std::string& identifier,
                                         std::vector<UserNotificationAction> actions) {
  categories_.insert_or_assign(identifier, std::move(actions));
  showAnew();
}

void LinuxUserNotifications::requestPermission(std::function<void(bool isAllowed)> answer) {
  const auto later = [this, answer](bool isAllowed) {
    runLoop_.post([answer, isAllowed] { answer(isAllowed); });
  };
  const bool isAsked =
      bus_ &&
      call(serverCall(bus_, "GetCapabilities"), longestCall, [this, later](sd_bus_message* reply) {
        const auto capabilities = reply ? texts(reply) : std::vector<std::string>();
        bodyIsMarkup_ = holds(capabilities, "body-markup");
        later(holds(capabilities, "actions"));
      });
  if (!isAsked) later(false);
}

void LinuxUserNotifications::deliver(const UserNotification& notification) {
  show({0, notification});
}

// One without a category asks nothing: it goes by itself, and nobody remembers it.
void LinuxUserNotifications::show(const PendingNotification& entry) {
  const bool asks = !entry.notification.categoryIdentifier.empty();
  if (asks) remember(entry);
  if (!bus_) return;
  const MessagePointer request = serverCall(bus_, "Notify");
  if (!request) return;
  const UserNotification& notification = entry.notification;
  const std::string title = shortened(withoutControlCharacters(notification.title));
  const std::string body = shortened(withoutControlCharacters(notification.body));
  sd_bus_message_append(request.get(), "susss", applicationName, entry.number, desktopEntry,
                        title.c_str(), (bodyIsMarkup_ ? escaped(body) : body).c_str());
  appendActions(request.get(), asks, categories_[notification.categoryIdentifier]);
  appendHints(request.get(), notification.playsDefaultSound);
  constexpr int untilAnswered = 0;
  constexpr int asTheServerDoes = -1;
  sd_bus_message_append(request.get(), "i", asks ? untilAnswered : asTheServerDoes);
  call(request, longestCall, [this, entry](sd_bus_message* reply) {
    std::uint32_t number = 0;
    if (reply && sd_bus_message_read(reply, "u", &number) > 0) hasShown(entry, number);
  });
}

void LinuxUserNotifications::remember(const PendingNotification& entry) {
  auto& entries = pending_.entries();
  entries.push_back(entry);
  // Some servers never say that a notification is gone.
  if (entries.size() > mostRemembered) entries.erase(entries.begin());
  pending_.save();
}

// It may have been answered already, or given to a server that went just then: the next shows it.
void LinuxUserNotifications::hasShown(const PendingNotification& shown, std::uint32_t number) {
  const auto isSame = [&](const PendingNotification& entry) {
    return entry.number == shown.number && !entry.isToBeShownAnew &&
           entry.notification.title == shown.notification.title &&
           entry.notification.userInfo == shown.notification.userInfo;
  };
  const auto found = std::ranges::find_if(pending_.entries(), isSame);
  if (found == pending_.entries().end()) return;
  found->number = number;
  pending_.save();
}

int LinuxUserNotifications::onAction(sd_bus_message* message, void* notifications, sd_bus_error*) {
  std::uint32_t number = 0;
  const char* action = nullptr;
  if (sd_bus_message_read(message, "us", &number, &action) > 0) {
    static_cast<LinuxUserNotifications*>(notifications)->chosen(number, action);
  }
  return 0;
}

int LinuxUserNotifications::onClosed(sd_bus_message* message, void* notifications, sd_bus_error*) {
  std::uint32_t number = 0;
  std::uint32_t reason = 0;
  if (sd_bus_message_read(message, "uu", &number, &reason) > 0) {
    static_cast<LinuxUserNotifications*>(notifications)->closed(number);
  }
  return 0;
}

int LinuxUserNotifications::onOwner(sd_bus_message* message, void* notifications, sd_bus_error*) {
  const char* name = nullptr;
  const char* before = nullptr;
  const char* now = nullptr;
  if (sd_bus_message_read(message, "sss", &name, &before, &now) > 0) {
    static_cast<LinuxUserNotifications*>(notifications)->serverIs(now);
  }
  return 0;
}

void LinuxUserNotifications::chosen(std::uint32_t number, const std::string& action) {
  if (number == 0) return;
  closings_.erase(number);
  auto notification = pending_.take(number);
  if (!notification) return;
  const bool isClick = action == clickAction;
  answer(std::move(*notification),
         isClick ? UserNotificationResponse{UserNotificationResponse::Kind::clicked, ""}
                 : UserNotificationResponse{UserNotificationResponse::Kind::action, action});
}

void LinuxUserNotifications::closed(std::uint32_t number) {
  if (number == 0 || !pending_.find(number)) return;
  closings_[number] = runLoop_.scheduleAfter(actionMayFollow, [this, number] {
    const auto timer = closings_.extract(number);  // stays until the task is done
    auto notification = pending_.take(number);
    if (!notification) return;
    answer(std::move(*notification), {UserNotificationResponse::Kind::dismissed, ""});
  });
}

void LinuxUserNotifications::answer(PendingNotification notification,
                                    UserNotificationResponse response) {
  pending_.save();
  answers_.push_back({std::move(notification), std::move(response)});
  runLoop_.post([this] { handOver(); });
}

void LinuxUserNotifications::setResponseHandler(ResponseHandler handler) {
  handler_ = std::move(handler);
  // The receivers of the categories come right after it.
  if (handler_) runLoop_.post([this] { handOver(); });
}

// An answer to what an earlier process has shown waits until its category is known.
void LinuxUserNotifications::handOver() {
  for (auto next = answers_.begin(); handler_ && next != answers_.end();) {
    const std::string& category = next->notification.notification.categoryIdentifier;
    if (!category.empty() && !categories_.contains(category)) {
      ++next;
      continue;
    }
    const Answer answer = std::move(*next);
    next = answers_.erase(next);
    handler_(answer.notification.notification.categoryIdentifier, answer.response,
             answer.notification.notification.userInfo);
  }
}

bool LinuxUserNotifications::call(const MessagePointer& request, std::chrono::microseconds timeout,
                                  Reply reply) {
  if (!request || !bus_) return false;
  const std::uint64_t number = ++lastCall_;
  auto call = std::make_unique<Call>(Call{*this, number, std::move(reply), nullptr});
  sd_bus_slot* slot = nullptr;
  const int result = sd_bus_call_async(bus_, &slot, request.get(), onReply, call.get(),
                                       static_cast<std::uint64_t>(timeout.count()));
  if (result < 0) return false;
  call->slot.reset(slot);
  calls_[number] = std::move(call);
  return true;
}

int LinuxUserNotifications::onReply(sd_bus_message* message, void* call, sd_bus_error*) {
  auto* under = static_cast<Call*>(call);
  const auto ended = under->owner.calls_.extract(under->number);  // until its reply is read
  if (ended.empty()) return 0;
  const bool isError = sd_bus_message_is_method_error(message, nullptr) != 0;
  under->owner.runLoop_.perform([&] { ended.mapped()->reply(isError ? nullptr : message); });
  return 0;
}

}  // namespace kestro
