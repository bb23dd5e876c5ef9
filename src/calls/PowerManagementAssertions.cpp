#include "calls/PowerManagementAssertions.h"

#include <algorithm>
#include <array>

#include "calls/AssertionFields.h"
#include "calls/PowerManagementSettings.h"
#include "calls/ProcessBundle.h"
#include "calls/SnapshotDump.h"
#include "foundation/TextCase.h"
#include "platform/Clock.h"
#include "platform/Process.h"
#include "platform/StandardOutput.h"
#include "product/KestroDatabase.h"
#include "product/KestroLegacy.h"

namespace kestro {
namespace {

using Assertion = PowerManagementAssertions::Assertion;
using PIDAndRunningApplication = PowerManagementAssertions::PIDAndRunningApplication;

constexpr std::int64_t heldLevel = 255;  // the assertion is on
constexpr std::array<std::string_view, 2> countingTypes{"PreventUserIdleSystemSleep",
                                                        "PreventUserIdleDisplaySleep"};
constexpr std::array<std::string_view, 2> audioInResources{"audio-in", "BuiltInMicrophoneDevice"};
constexpr std::array<std::string_view, 2> audioOutResources{"audio-out", "BuiltInSpeakerDevice"};

bool counts(const std::optional<std::string>& type) {
  return type && std::ranges::find(countingTypes, *type) != countingTypes.end();
}

bool contains(const std::optional<std::string>& text, std::string_view part) {
  return text && text->find(part) != std::string::npos;
}

bool usesAny(const std::set<std::string>& used, const std::array<std::string_view, 2>& resources) {
  return std::ranges::any_of(
      resources, [&](std::string_view resource) { return used.contains(std::string(resource)); });
}

// Absent when the assertion says nothing about calls.
std::optional<Assertion> acceptedAssertion(const AssertionFields& fields,
                                           ProcessIdentifier listedUnder,
                                           const PowerManagementSettings& settings, Date now) {
  if (fields.level() != heldLevel) return std::nullopt;
  if (!counts(fields.type()) && !counts(fields.trueType())) return std::nullopt;
  if (settings.suppressUSBAudioDevices && contains(fields.name(), "USBAudio")) return std::nullopt;
  Assertion assertion{fields.onBehalfOfPID().value_or(listedUnder),
                      fields.processName(),
                      fields.type(),
                      fields.name(),
                      fields.startedAt(),
                      fields.resourcesUsed()};
  if (assertion.startedAt && !(now - *assertion.startedAt < settings.maximumPMAssertionAge)) {
    return std::nullopt;
  }
  return assertion;
}

// Some applications say in the name of their assertion that a call runs.
bool countsAsBothByName(const Assertion& assertion, const PowerManagementSettings& settings) {
  if (!assertion.name) return false;
  const std::string name = lowercased(*assertion.name);
  const auto says = [&](std::string_view part) { return name.find(part) != std::string::npos; };
  if (settings.treatWebRTCLikeAudioInAndOutAssertions &&
      says("webrtc has active peerconnections")) {
    return true;
  }
  return settings.treatOnACallLikeAudioInAndOutAssertions &&
         (says("on a call") || says("call in progress"));
}

void classify(const Assertion& assertion, const PowerManagementSettings& settings,
              PowerManagementAssertions& snapshot) {
  if (countsAsBothByName(assertion, settings)) {
    snapshot.pidsOfAppsWithAudioInAssertion.insert(assertion.pid);
    snapshot.pidsOfAppsWithAudioOutAssertion.insert(assertion.pid);
    return;
  }
  if (!assertion.resourcesUsed) return;
  const bool in = usesAny(*assertion.resourcesUsed, audioInResources);
  const bool out = usesAny(*assertion.resourcesUsed, audioOutResources);
  if (in && out) {
    snapshot.pidsOfAppsWithBothAssertions.insert(assertion.pid);
  } else if (in) {
    snapshot.pidsOfAppsWithAudioInAssertion.insert(assertion.pid);
  } else if (out) {
    snapshot.pidsOfAppsWithAudioOutAssertion.insert(assertion.pid);
  }
}

std::set<ProcessIdentifier> meetingRelatedPids(const PowerManagementAssertions& snapshot) {
  auto in = snapshot.pidsOfAppsWithBothAssertions;
  in.insert(snapshot.pidsOfAppsWithAudioInAssertion.begin(),
            snapshot.pidsOfAppsWithAudioInAssertion.end());
  std::erase_if(in, [&](ProcessIdentifier pid) {
    return !snapshot.pidsOfAppsWithBothAssertions.contains(pid) &&
           !snapshot.pidsOfAppsWithAudioOutAssertion.contains(pid);
  });
  return in;
}

PIDAndRunningApplication resolved(Process& process, ProcessIdentifier pid) {
  PIDAndRunningApplication result;
  result.pid = pid;
  result.application = process.platform().workspace.runningApplication(pid);
  if (result.application) {
    result.bundleIdentifier = result.application->bundleIdentifier;
    if (const auto& name = result.application->localizedName) {
      result.applicationName = removingInvisibleControlCharacters(*name);
    }
  }
  if (!result.bundleIdentifier) {
    const ApplicationBundle bundle = bundleAroundProcess(process, pid);
    result.bundleIdentifier = bundle.bundleIdentifier;
    if (!result.applicationName) result.applicationName = bundle.localizedName;
  }
  if (auto& name = result.applicationName) {
    name = removingSuffixIfPresent(removingSuffixIfPresent(*name, " (Renderer)"), " Helper");
  }
  return result;
}

}  // namespace

PowerManagementAssertions PowerManagementAssertions::current(Process& process,
                                                             const LogSink& logSink) {
  const Date now = process.platform().clock.now();
  const auto& settings = process.shared<PowerManagementSettings>();
  PowerManagementAssertions snapshot;
  const auto byProcess = process.platform().powerManagement.assertionsByProcess();
  if (!byProcess) return snapshot;

  for (const auto& [listedUnder, assertions] : *byProcess) {
    for (const PropertyListDictionary& fields : assertions) {
      auto accepted = acceptedAssertion(AssertionFields(fields), listedUnder, settings, now);
      if (!accepted) continue;
      classify(*accepted, settings, snapshot);
      snapshot.assertions.push_back(std::move(*accepted));
    }
  }
  for (const ProcessIdentifier pid : meetingRelatedPids(snapshot)) {
    auto application = resolved(process, pid);
    application.audioInAndOutAssertionsHaveBeenRecordedSeparately =
        snapshot.pidsOfAppsWithAudioInAssertion.contains(pid);
    snapshot.appsWithMeetingRelatedPMAssertions.push_back(std::move(application));
  }

  if (logSink) {
    dumpSnapshot(process, *byProcess, snapshot, logSink);
  } else if (settings.dumpRecordedAssertions) {
    dumpSnapshot(process, *byProcess, snapshot,
                 [&](std::string_view line) { process.platform().standardOutput.printLine(line); });
  }
  return snapshot;
}

}  // namespace kestro
