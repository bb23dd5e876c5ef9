// The helper's own object on the session bus: scripting commands, addresses and the timer for other
// programs, and what they are told. Its name there is what makes the helper the only one of the
// session. Main thread only.
//
// Nothing of what the user does or calls things passes over the bus.
#pragma once

#include <optional>
#include <string>

#include "linux/session/BusConnection.h"
#include "platform/AppleEvents.h"
#include "platform/ControlService.h"

namespace kestro {

class LinuxScripting final : public AppleEvents, public ControlService {
 public:
  LinuxScripting(BusConnection& sessionBus, LinuxRunLoop& runLoop, SystemLog& log);
  ~LinuxScripting() override;
  LinuxScripting(const LinuxScripting&) = delete;
  LinuxScripting& operator=(const LinuxScripting&) = delete;

  // Takes the helper's name on the bus, now and on every later connection. False when another
  // helper has it. True without a bus: there is nobody to be told apart from. A name that is taken
  // when the bus has come back ends this helper, in order.
  bool claimName();

  void setCommandHandler(CommandHandler handler) override;
  void setGetURLHandler(URLHandler handler) override;
  void setDelegate(ControlDelegate* delegate) override;
  void statusMayHaveChanged() override;

  // For the object's methods.
  int pause(sd_bus_message* call, sd_bus_error* error);
  int resume(sd_bus_message* call, sd_bus_error* error);
  int startTimer(sd_bus_message* call, sd_bus_error* error);
  int stopTimer(sd_bus_message* call, sd_bus_error* error);
  int openAddress(sd_bus_message* call, sd_bus_error* error);
  int readProperty(std::string_view name, sd_bus_message* reply);

 private:
  bool claimNameOn(sd_bus* bus) const;
  int answer(sd_bus_message* call, sd_bus_error* error, ControlOutcome outcome);
  int refuseWhileStarting(sd_bus_error* error) const;

  BusConnection& sessionBus_;
  LinuxRunLoop& runLoop_;
  SystemLog& log_;
  bool claimsName_ = false;
  CommandHandler commandHandler_;
  URLHandler urlHandler_;
  ControlDelegate* delegate_ = nullptr;
  ControlStatus told_;
  SlotPointer object_;
};

}  // namespace kestro
