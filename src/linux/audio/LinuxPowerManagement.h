// What stands for power-management assertions here: the sound server's streams in use, and what
// programs keep the machine awake. Main thread only; costs no request to another process.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "linux/audio/AudioAssertions.h"
#include "linux/audio/AudioStreams.h"
#include "linux/session/Inhibitors.h"
#include "platform/PowerManagement.h"

namespace kestro {

// Adds what the inhibitors say to what the streams say. An inhibitor without a process is listed
// under process 0. One alone is no evidence of a call, whatever its reason says: it is on only
// where its process has sound, too.
void addInhibitors(PowerManagement::AssertionsByProcess& assertions,
                   const std::vector<Inhibitor>& inhibitors);

class LinuxPowerManagement final : public PowerManagement {
 public:
  // The inhibitors must outlive it.
  LinuxPowerManagement(const Inhibitors& inhibitors, SystemLog& log);

  std::optional<AssertionsByProcess> assertionsByProcess() override;

 private:
  using Inside = std::pair<ProcessIdentifier, std::string>;

  const Inhibitors& inhibitors_;
  AudioStreams streams_;
  ProcessFacts facts_;
  // What the search of all processes has found, while it is there.
  std::map<Inside, ProcessIdentifier> processesInNamespaces_;
};

}  // namespace kestro
