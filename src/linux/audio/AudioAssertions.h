// What stands for the designed platform's power-management assertions of its audio service: one for
// every stream in use, under the application that plays or records. Pure but for what it asks about
// processes.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "linux/audio/AudioStreams.h"
#include "platform/PowerManagement.h"

namespace kestro {

// What is asked about processes; the kernel's answers come from linux/process.
struct ProcessFacts {
  std::function<std::optional<std::string>(ProcessIdentifier)> executablePath;
  std::function<std::optional<std::string>(ProcessIdentifier)> name;  // 15 characters at most
  std::function<std::optional<ProcessIdentifier>(ProcessIdentifier)> parent;
  // Of the process that has this identifier in a namespace of its own, and this name there.
  std::function<std::optional<ProcessIdentifier>(ProcessIdentifier, const std::string& name)>
      processInNamespace;
};

ProcessFacts factsOfTheKernel();

// Whether the stream says that its process plays to somebody, or listens to a microphone.
bool countsAsAudio(const AudioStream& stream);

// The process of the application that the stream belongs to: where an application has processes of
// the same executable for its sound, the first of them. Absent: unknown, or gone.
std::optional<ProcessIdentifier> applicationOf(const AudioStream& stream,
                                               const ProcessFacts& facts);

PowerManagement::AssertionsByProcess audioAssertions(const std::vector<AudioStream>& streams,
                                                     const ProcessFacts& facts);

}  // namespace kestro
