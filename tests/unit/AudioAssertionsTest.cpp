// Streams of a sound server as assertions: which count, and for which application; and what keeps
// the machine awake beside them.
#include "linux/audio/AudioAssertions.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "linux/audio/LinuxPowerManagement.h"

namespace kestro {
namespace {

struct KnownProcess {
  const char* path;
  const char* name;
  ProcessIdentifier parent;
};

constexpr const char* browser = "/usr/lib/browser/browser";
const std::map<ProcessIdentifier, KnownProcess> processes{
    {1, {"/sbin/init", "init", 0}},
    {2, {"/usr/sbin/udevd", "udevd", 1}},
    {100, {browser, "browser", 1}},
    {101, {browser, "browser", 100}},
    {102, {browser, "AudioThread", 101}},
    {110, {"/usr/lib/browser/crash", "crash", 100}},
    {300, {"/usr/bin/play", "play", 1}},
    {301, {"/usr/bin/record", "record", 1}},
    {400, {"/usr/bin/sandbox", "sandbox", 1}},
    {401, {"/app/a-talk-with-a-long-name", "a-talk-with-a-l", 400}},  // 2 in its namespace
};

const KnownProcess* known(ProcessIdentifier process) {
  const auto found = processes.find(process);
  return found == processes.end() ? nullptr : &found->second;
}

ProcessFacts inventedFacts() {
  return {[](ProcessIdentifier process) {
            const auto* found = known(process);
            return found ? std::optional<std::string>(found->path) : std::nullopt;
          },
          [](ProcessIdentifier process) {
            const auto* found = known(process);
            return found ? std::optional<std::string>(found->name) : std::nullopt;
          },
          [](ProcessIdentifier process) {
            const auto* found = known(process);
            return found && found->parent > 0 ? std::optional(found->parent) : std::nullopt;
          },
          [](ProcessIdentifier inside, const std::string& name) {
            const bool isThat = inside == 2 && name == "a-talk-with-a-l";
            return isThat ? std::optional<ProcessIdentifier>(401) : std::nullopt;
          }};
}

AudioStream plays(std::optional<ProcessIdentifier> process, const char* program) {
  AudioStream stream;
  stream.process = process;
  stream.program = program;
  return stream;
}

AudioStream records(std::optional<ProcessIdentifier> process, const char* program) {
  AudioStream stream = plays(process, program);
  stream.isRecording = true;
  return stream;
}

AudioStream corked(AudioStream stream) {
  stream.isCorked = true;
  return stream;
}

AudioStream ofPlayback(AudioStream stream) {
  stream.recordsPlayback = true;
  return stream;
}

AudioStream ofServer(AudioStream stream) {
  stream.hasClient = false;
  return stream;
}

// Of each process its assertions and their levels: "100 audio-in 255 audio-out 255; 300 …".
std::string summary(const PowerManagement::AssertionsByProcess& assertions) {
  std::string text;
  for (const auto& [process, list] : assertions) {
    text += fmt::format("{}{}", text.empty() ? "" : "; ", process);
    for (const PropertyListDictionary& each : list) {
      const auto* resources = each.find("ResourcesUsed");
      const PropertyList& used =
          resources ? resources->get<PropertyListArray>()->front() : *each.find("AssertName");
      text += fmt::format(" {} {}", *used.get<std::string>(),
                          *each.find("AssertLevel")->get<std::int64_t>());
    }
  }
  return text;
}

TEST(AudioAssertions, creditsStreamsToApplications) {
  struct {
    std::vector<AudioStream> streams;
    const char* expected;
  } const cases[] = {
      {{}, ""},
      {{plays(300, "play")}, "300 audio-out 255"},
      {{plays(300, "play"), records(301, "record")}, "300 audio-out 255; 301 audio-in 255"},
      // The process that has a browser's sound is not the one that has its windows.
      {{plays(102, "browser"), records(102, "browser")}, "100 audio-out 255 audio-in 255"},
      {{plays(102, ""), records(100, "browser")}, "100 audio-out 255 audio-in 255"},
      {{plays(110, "crash")}, "110 audio-out 255"},
      {{corked(plays(300, "play")), records(300, "play")}, "300 audio-in 255"},
      {{plays(300, "play"), ofPlayback(records(300, "play"))}, "300 audio-out 255"},
      {{ofServer(plays(300, "play")), ofServer(records(300, "play"))}, ""},
      // In a namespace of its own it takes itself for another.
      {{plays(2, "a-talk-with-a-long-name"), records(2, "a-talk-with-a-long-name")},
       "401 audio-out 255 audio-in 255"},
      // A program whose file has another name by now.
      {{records(301, "recorder")}, "301 audio-in 255"},
      // Gone, and unknown.
      {{plays(999, "play"), records(std::nullopt, "record")}, ""},
  };
  for (const auto& [streams, expected] : cases)
    EXPECT_EQ(summary(audioAssertions(streams, inventedFacts())), expected);
}

TEST(AudioAssertions, areWhatCallsAreJudgedBy) {
  AudioStream stream = records(102, "browser");
  stream.since = Date(std::chrono::milliseconds(1'700'000'000'000));
  const auto assertions = audioAssertions({stream}, inventedFacts());
  const PropertyListDictionary& assertion = assertions.at(100).front();
  EXPECT_EQ(*assertion.find("AssertType")->get<std::string>(), "PreventUserIdleSystemSleep");
  EXPECT_EQ(*assertion.find("AssertStartWhen")->get<Date>(), stream.since);
  EXPECT_EQ(*assertion.find("Process Name")->get<std::string>(), "browser");
}

TEST(AudioAssertions, inhibitorsAloneAreOff) {
  const Inhibitor call{"talk", "On a call", true, false, 300};
  const Inhibitor video{"talk", "Video", true, true, 300};
  const Inhibitor unknown{"browser", "Call in progress", true, false, std::nullopt};
  struct {
    std::vector<AudioStream> streams;
    std::vector<Inhibitor> inhibitors;
    const char* expected;
  } const cases[] = {
      {{}, {call}, "300 On a call 0"},
      {{}, {video, call}, "300 Video 0 Video 0 On a call 0"},
      {{plays(300, "play")}, {call}, "300 audio-out 255 On a call 255"},
      {{plays(301, "record")}, {call}, "300 On a call 0; 301 audio-out 255"},
      {{plays(300, "play")}, {unknown}, "0 Call in progress 0; 300 audio-out 255"},
  };
  for (const auto& [streams, inhibitors, expected] : cases) {
    auto assertions = audioAssertions(streams, inventedFacts());
    addInhibitors(assertions, inhibitors);
    EXPECT_EQ(summary(assertions), expected);
  }
}

}  // namespace
}  // namespace kestro
