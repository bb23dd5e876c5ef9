#include "linux/audio/LinuxPowerManagement.h"

#include "linux/process/ProcessInformation.h"

namespace kestro {
namespace {

constexpr std::int64_t inhibitorIsOn = 255;
constexpr std::int64_t inhibitorIsOff = 0;

PropertyListDictionary assertionOf(const Inhibitor& inhibitor, const char* type, bool isOn) {
  return {{"AssertLevel", isOn ? inhibitorIsOn : inhibitorIsOff},
          {"AssertType", type},
          {"AssertName", inhibitor.why},
          {"Process Name", inhibitor.who}};
}

}  // namespace

void addInhibitors(PowerManagement::AssertionsByProcess& assertions,
                   const std::vector<Inhibitor>& inhibitors) {
  for (const Inhibitor& inhibitor : inhibitors) {
    const ProcessIdentifier process = inhibitor.process.value_or(0);
    const bool hasSound = process != 0 && assertions.contains(process);
    if (inhibitor.keepsSystemAwake) {
      assertions[process].push_back(assertionOf(inhibitor, "PreventUserIdleSystemSleep", hasSound));
    }
    if (inhibitor.keepsDisplayAwake) {
      assertions[process].push_back(
          assertionOf(inhibitor, "PreventUserIdleDisplaySleep", hasSound));
    }
  }
}

LinuxPowerManagement::LinuxPowerManagement(const Inhibitors& inhibitors, SystemLog& log)
    : inhibitors_(inhibitors), streams_(log), facts_(factsOfTheKernel()) {
  facts_.processInNamespace = [this](ProcessIdentifier inside, const std::string& name) {
    const auto known = processesInNamespaces_.find({inside, name});
    if (known != processesInNamespaces_.end() && executablePath(known->second)) {
      return std::optional(known->second);
    }
    const auto found = processInNamespace(inside, name);
    if (found) processesInNamespaces_.insert_or_assign({inside, name}, *found);
    return found;
  };
}

std::optional<PowerManagement::AssertionsByProcess> LinuxPowerManagement::assertionsByProcess() {
  AssertionsByProcess assertions = audioAssertions(streams_.snapshot(), facts_);
  addInhibitors(assertions, inhibitors_.all());
  return assertions;
}

}  // namespace kestro
