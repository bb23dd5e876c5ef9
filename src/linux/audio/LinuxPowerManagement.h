// What stands for power-management assertions here: the sound server's streams in use, and what
// programs keep the machine awake. Main thread only; costs no request to another process.
#pragma once

#include <map>
#include <optional>
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

  std::optional<ProcessIdentifier> processInside(const Inside& inside);

  const Inhibitors& inhibitors_;
  AudioStreams streams_;
  ProcessFacts facts_;
  // What searches of all processes have found, also that there is none: kept while one snapshot
  // after the other asks for it.
  std::map<Inside, std::optional<ProcessIdentifier>> processesBefore_;
  std::map<Inside, std::optional<ProcessIdentifier>> processesNow_;
};

}  // namespace kestro
