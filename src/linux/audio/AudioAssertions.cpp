#include "linux/audio/AudioAssertions.h"

#include <filesystem>

#include "linux/process/ProcessInformation.h"

namespace kestro {
namespace {

constexpr std::int64_t assertionIsOn = 255;
constexpr std::size_t longestName = 15;  // of a process, as the kernel keeps it
constexpr int mostGenerations = 10;

// In a namespace the number that a program gives for itself is another process's outside.
bool isThatProgram(ProcessIdentifier process, const std::string& program,
                   const ProcessFacts& facts) {
  const auto path = facts.executablePath(process);
  if (program.empty()) return path.has_value();
  if (path && std::filesystem::path(*path).filename() == program) return true;
  const auto name = facts.name(process);
  return name && *name == program.substr(0, longestName);
}

std::optional<ProcessIdentifier> processOfStream(const AudioStream& stream,
                                                 const ProcessFacts& facts) {
  if (!stream.process) return std::nullopt;
  if (isThatProgram(*stream.process, stream.program, facts)) return stream.process;
  const auto inside =
      facts.processInNamespace(*stream.process, stream.program.substr(0, longestName));
  if (inside) return inside;
  return facts.executablePath(*stream.process) ? stream.process : std::nullopt;
}

}  // namespace

ProcessFacts factsOfTheKernel() {
  return {executablePath, processName, parentProcess, processInNamespace};
}

bool countsAsAudio(const AudioStream& stream) {
  return stream.hasClient && !stream.isCorked && !stream.recordsPlayback;
}

std::optional<ProcessIdentifier> applicationOf(const AudioStream& stream,
                                               const ProcessFacts& facts) {
  auto process = processOfStream(stream, facts);
  if (!process) return std::nullopt;
  const auto path = facts.executablePath(*process);
  for (int generation = 0; path && generation < mostGenerations; ++generation) {
    const auto parent = facts.parent(*process);
    if (!parent || facts.executablePath(*parent) != path) break;
    process = parent;
  }
  return process;
}

PowerManagement::AssertionsByProcess audioAssertions(const std::vector<AudioStream>& streams,
                                                     const ProcessFacts& facts) {
  PowerManagement::AssertionsByProcess assertions;
  for (const AudioStream& stream : streams) {
    if (!countsAsAudio(stream)) continue;
    const auto process = applicationOf(stream, facts);
    if (!process) continue;
    PropertyListDictionary assertion{{"AssertLevel", assertionIsOn},
                                     {"AssertType", "PreventUserIdleSystemSleep"},
                                     {"AssertName", "com.kestro.audio.stream"},
                                     {"AssertStartWhen", stream.since}};
    assertion.setIfPresent("Process Name", facts.name(*process));
    assertion.set("ResourcesUsed",
                  PropertyListArray{stream.isRecording ? "audio-in" : "audio-out"});
    assertions[*process].push_back(std::move(assertion));
  }
  return assertions;
}

}  // namespace kestro
