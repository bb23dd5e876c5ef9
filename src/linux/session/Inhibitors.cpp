#include "linux/session/Inhibitors.h"

#include <unistd.h>

#include <array>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr const char* login = "org.freedesktop.login1";
constexpr const char* loginObject = "/org/freedesktop/login1";
constexpr const char* loginManager = "org.freedesktop.login1.Manager";
constexpr const char* sessionManager = "org.gnome.SessionManager";
constexpr const char* sessionObject = "/org/gnome/SessionManager";
constexpr const char* sessionInhibitor = "org.gnome.SessionManager.Inhibitor";
constexpr const char* signalSource = "org.freedesktop.DBus.Properties";
constexpr std::uint64_t longestAnswer = 2'000'000;  // microseconds
constexpr std::size_t mostInhibitors = 100;
// Of GNOME's session manager (GsmInhibitorFlag).
constexpr std::uint32_t inhibitsSuspending = 4;
constexpr std::uint32_t inhibitsIdling = 8;

// What stands between colons ("sleep:idle").
bool isListed(std::string_view list, std::string_view name) {
  while (!list.empty()) {
    const std::string_view first = list.substr(0, list.find(':'));
    if (first == name) return true;
    list.remove_prefix(std::min(list.size(), first.size() + 1));
  }
  return false;
}

}  // namespace

Inhibitors::Inhibitors(BusConnection& sessionBus, BusConnection& systemBus)
    : sessionBus_(sessionBus), systemBus_(systemBus) {
  systemBus_.watch(
      this, [this](sd_bus* bus) { watchLogin(bus); },
      [this] {
        ofLogin_.clear();
        loginList_.reset();
      });
  sessionBus_.watch(
      this, [this](sd_bus* bus) { watchSession(bus); },
      [this] {
        ofSession_.clear();
        sessionList_.reset();
        questions_.clear();
      });
}

Inhibitors::~Inhibitors() {
  systemBus_.forget(this);
  sessionBus_.forget(this);
}

std::vector<Inhibitor> Inhibitors::all() const {
  std::vector<Inhibitor> list = ofLogin_;
  for (const auto& [object, inhibitor] : ofSession_)
    list.push_back(inhibitor);
  return list;
}

void Inhibitors::watchLogin(sd_bus* bus) {
  // The slot goes with the connection.
  sd_bus_match_signal_async(bus, nullptr, login, loginObject, signalSource, "PropertiesChanged",
                            onLoginChange, nullptr, this);
  askLogin();
}

void Inhibitors::watchSession(sd_bus* bus) {
  for (const char* signal : {"InhibitorAdded", "InhibitorRemoved"}) {
    sd_bus_match_signal_async(bus, nullptr, sessionManager, sessionObject, sessionManager, signal,
                              onSessionChange, nullptr, this);
  }
  askSession();
}

// Nothing is started for it. The answer to an earlier question is not waited for any more.
void Inhibitors::ask(sd_bus* bus, SlotPointer& slot, const char* service, const std::string& object,
                     const char* interface, const char* member, sd_bus_message_handler_t handler,
                     void* context) {
  slot.reset();
  if (!bus) return;
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(bus, &message, service, object.c_str(), interface, member);
  const MessagePointer request(message);
  if (!request) return;
  sd_bus_message_set_auto_start(message, 0);
  sd_bus_slot* asked = nullptr;
  sd_bus_call_async(bus, &asked, message, handler, context, longestAnswer);
  slot.reset(asked);
}

void Inhibitors::askLogin() {
  ask(systemBus_.get(), loginList_, login, loginObject, loginManager, "ListInhibitors", onLoginList,
      this);
}

void Inhibitors::askSession() {
  ask(sessionBus_.get(), sessionList_, sessionManager, sessionObject, sessionManager,
      "GetInhibitors", onSessionList, this);
}

int Inhibitors::onLoginChange(sd_bus_message*, void* inhibitors, sd_bus_error*) {
  static_cast<Inhibitors*>(inhibitors)->askLogin();
  return 0;
}

int Inhibitors::onSessionChange(sd_bus_message*, void* inhibitors, sd_bus_error*) {
  static_cast<Inhibitors*>(inhibitors)->askSession();
  return 0;
}

int Inhibitors::onLoginList(sd_bus_message* reply, void* inhibitors, sd_bus_error*) {
  auto& list = static_cast<Inhibitors*>(inhibitors)->ofLogin_;
  list.clear();
  if (sd_bus_message_enter_container(reply, 'a', "(ssssuu)") <= 0) return 0;
  std::array<const char*, 4> texts{};  // what, who, why, mode
  std::uint32_t user = 0;
  std::uint32_t process = 0;
  while (list.size() < mostInhibitors &&
         sd_bus_message_read(reply, "(ssssuu)", &texts[0], &texts[1], &texts[2], &texts[3], &user,
                             &process) > 0) {
    // One that only delays keeps nothing awake.
    if (user != getuid() || std::string_view(texts[3]) != "block") continue;
    list.push_back({texts[1], texts[2], isListed(texts[0], "sleep"), isListed(texts[0], "idle"),
                    static_cast<ProcessIdentifier>(process)});
  }
  return 0;
}

int Inhibitors::onSessionList(sd_bus_message* reply, void* inhibitors, sd_bus_error*) {
  auto* self = static_cast<Inhibitors*>(inhibitors);
  std::map<std::string, Inhibitor> before = std::exchange(self->ofSession_, {});
  if (sd_bus_message_enter_container(reply, 'a', "o") <= 0) return 0;
  const char* object = nullptr;
  self->questions_.clear();
  while (self->ofSession_.size() < mostInhibitors && sd_bus_message_read(reply, "o", &object) > 0) {
    self->ofSession_[object] = std::move(before[object]);
    self->askAbout(object);
  }
  return 0;
}

void Inhibitors::askAbout(const std::string& object) {
  for (const char* member : {"GetAppId", "GetReason", "GetFlags"}) {
    questions_.push_back(std::make_unique<Question>(Question{*this, object, member, nullptr}));
    Question& question = *questions_.back();
    ask(sessionBus_.get(), question.slot, sessionManager, object, sessionInhibitor, member,
        onSessionFact, &question);
  }
}

int Inhibitors::onSessionFact(sd_bus_message* reply, void* asked, sd_bus_error*) {
  const auto* question = static_cast<Question*>(asked);
  const auto found = question->owner.ofSession_.find(question->object);
  if (found == question->owner.ofSession_.end()) return 0;
  Inhibitor& inhibitor = found->second;
  const std::string_view member = question->member;
  std::uint32_t flags = 0;
  const char* text = nullptr;
  if (member == "GetFlags") {
    if (sd_bus_message_read(reply, "u", &flags) <= 0) return 0;
    inhibitor.keepsSystemAwake = (flags & inhibitsSuspending) != 0;
    inhibitor.keepsDisplayAwake = (flags & inhibitsIdling) != 0;
  } else if (sd_bus_message_read(reply, "s", &text) > 0) {
    (member == "GetAppId" ? inhibitor.who : inhibitor.why) = text;
  }
  return 0;
}

}  // namespace kestro
