#include "linux/audio/LinuxPowerManagement.h"

#include <set>

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
  std::set<ProcessIdentifier> withSound;
  for (const auto& [process, streams] : assertions)
    withSound.insert(process);
  for (const Inhibitor& inhibitor : inhibitors) {
    const ProcessIdentifier process = inhibitor.process.value_or(0);
    const bool hasSound = withSound.contains(process);
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
    return processInside({inside, name});
  };
}

std::optional<PowerManagement::AssertionsByProcess> LinuxPowerManagement::assertionsByProcess() {
  processesBefore_ = std::exchange(processesNow_, {});
  AssertionsByProcess assertions = audioAssertions(streams_.snapshot(), facts_);
  addInhibitors(assertions, inhibitors_.all());
  return assertions;
}

std::optional<ProcessIdentifier> LinuxPowerManagement::processInside(const Inside& inside) {
  const auto before = processesBefore_.find(inside);
  const bool isKnown = before != processesBefore_.end() &&
                       (!before->second || executablePath(*before->second).has_value());
  const auto process = isKnown ? before->second : processInNamespace(inside.first, inside.second);
  processesNow_.insert_or_assign(inside, process);
  return process;
}

}  // namespace kestro
