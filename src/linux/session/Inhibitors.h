// What programs of the user keep the machine or its screen awake: logind's inhibitors, and those of
// the session's manager. Both are told of changes; nothing is asked again and again. Main thread
// only.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "linux/session/BusConnection.h"
#include "platform/SampleBudget.h"

namespace kestro {

struct Inhibitor {
  std::string who;
  std::string why;
  bool keepsSystemAwake = false;
  bool keepsDisplayAwake = false;
  std::optional<ProcessIdentifier> process;  // the session's manager does not tell
};

class Inhibitors {
 public:
  Inhibitors(BusConnection& sessionBus, BusConnection& systemBus);
  ~Inhibitors();
  Inhibitors(const Inhibitors&) = delete;
  Inhibitors& operator=(const Inhibitors&) = delete;

  std::vector<Inhibitor> all() const;

 private:
  // One fact about an inhibitor of the session's manager.
  struct Question {
    Inhibitors& owner;
    std::string object;
    const char* member;
    SlotPointer slot;
  };

  static int onLoginChange(sd_bus_message* signal, void* inhibitors, sd_bus_error* error);
  static int onLoginList(sd_bus_message* reply, void* inhibitors, sd_bus_error* error);
  static int onSessionChange(sd_bus_message* signal, void* inhibitors, sd_bus_error* error);
  static int onSessionList(sd_bus_message* reply, void* inhibitors, sd_bus_error* error);
  static int onSessionFact(sd_bus_message* reply, void* question, sd_bus_error* error);
  void watchLogin(sd_bus* bus);
  void watchSession(sd_bus* bus);
  void askLogin();
  void askSession();
  void askAbout(const std::string& object);
  void ask(sd_bus* bus, SlotPointer& slot, const char* service, const std::string& object,
           const char* interface, const char* member, sd_bus_message_handler_t handler,
           void* context);

  BusConnection& sessionBus_;
  BusConnection& systemBus_;
  std::vector<Inhibitor> ofLogin_;
  std::map<std::string, Inhibitor> ofSession_;  // by object
  SlotPointer loginList_;
  SlotPointer sessionList_;
  std::vector<std::unique_ptr<Question>> questions_;
};

}  // namespace kestro
