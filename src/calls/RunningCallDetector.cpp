#include "calls/RunningCallDetector.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "calls/ApplicationsInCall.h"
#include "calls/BrowserCalls.h"
#include "calls/CallEvents.h"
#include "calls/CallSettings.h"
#include "platform/Clock.h"
#include "platform/Process.h"

namespace kestro {

RunningCallDetector& RunningCallDetector::sharedInstance(Process& process) {
  return process.shared<RunningCallDetector>();
}

RunningCallDetector::RunningCallDetector(Process& process)
    : process_(process), callEndedHandler_(process) {
  callEndedHandler_.registerNotificationCategory(*this);
}

void RunningCallDetector::updateCallStatusForActivity(Activity& activity) {
  const auto& settings = process_.shared<CallSettings>();
  const bool isPaused = !process_.shared<InfoLogger>().shouldTrack();
  if (isPaused && !settings.detectCallsWhenTrackingPaused) return;
  if (!settings.pmAssertionBasedCallDetectionEnabled) return;

  const Date now = process_.platform().clock.now();
  const auto snapshot = PowerManagementAssertions::current(process_);
  logMeetingAssertions(snapshot);
  const auto applications = currentCalls(snapshot, activity);
  for (const ApplicationAndMetadata& application : applications)
    noteCall(application, now);
  logParallelCalls(applications);
  endCallsNotSeen(now);
}

bool RunningCallDetector::detectsCallsWhenTrackingIsPaused() const {
  return process_.shared<CallSettings>().detectCallsWhenTrackingPaused;
}

RunningCallDetector::Applications RunningCallDetector::currentCalls(
    const PowerManagementAssertions& snapshot, Activity& activity) {
  auto applications = applicationsInCall(process_, snapshot, activity);
  if (!process_.shared<CallSettings>().browserBasedCallDetectionEnabled) return applications;
  for (const auto& application : snapshot.appsWithMeetingRelatedPMAssertions) {
    if (auto call = browserCall(process_, application, activity)) applications.push_back(*call);
  }
  return applications;
}

void RunningCallDetector::logMeetingAssertions(const PowerManagementAssertions& snapshot) {
  for (const auto& entry : snapshot.appsWithMeetingRelatedPMAssertions) {
    if (!entry.application || !entry.application->bundleIdentifier) continue;
    if (!entry.audioInAndOutAssertionsHaveBeenRecordedSeparately) continue;
    const std::string& identifier = *entry.application->bundleIdentifier;
    if (!analyticsEventsSentForMeetingPMAssertionsWithBundleIdentifiers_.insert(identifier)
             .second) {
      continue;
    }
    logMeetingAssertionDetected(process_, identifier, entry.applicationName);
  }
}

void RunningCallDetector::logParallelCalls(const Applications& applications) {
  if (applications.size() < 2 || hasSentAnalyticsEventForMultipleParallelPMAssertions_) return;
  hasSentAnalyticsEventForMultipleParallelPMAssertions_ = true;
  std::vector<std::string> identifiers;
  for (const auto& application : applications)
    identifiers.push_back(application.bundleIdentifier);
  std::ranges::sort(identifiers);
  logMultipleParallelAssertions(process_, identifiers);
}

void RunningCallDetector::noteCall(const ApplicationAndMetadata& application, Date now) {
  const auto& [identifier, metadata] = application;
  const auto running = runningCallsByBundleIdentifier_.find(identifier);
  if (running != runningCallsByBundleIdentifier_.end()) {
    running->second.lastSeen = now;
    running->second.metadata.merge(metadata);
    return;
  }
  const CallProperties call{now, now, metadata};
  runningCallsByBundleIdentifier_.emplace(identifier, call);
  recordCallStart(process_, identifier, call);
  logCallStart(process_, identifier, metadata);
}

void RunningCallDetector::endCallsNotSeen(Date now) {
  const Seconds threshold = process_.shared<CallSettings>().thresholdForConsideringACallToBeOver;
  std::vector<std::pair<std::string, CallProperties>> ended;
  for (const auto& call : runningCallsByBundleIdentifier_) {
    // Written so that a threshold that is not a number ends calls rather than keeping them.
    if (!(now - call.second.lastSeen <= threshold)) ended.emplace_back(call);
  }
  for (const auto& [identifier, call] : ended) {
    runningCallsByBundleIdentifier_.erase(identifier);
    endCall(identifier, call);
  }
}

void RunningCallDetector::endCall(const std::string& bundleIdentifier, const CallProperties& call) {
  logCallEnd(process_, bundleIdentifier, call);
  std::optional<std::string> action = "tooShort";
  if (!(call.duration() < process_.shared<CallSettings>().minimumCallDurationForNotifying())) {
    action = callEndedHandler_.handleEndedCall(bundleIdentifier, call);
  }
  recordCallEnd(process_, bundleIdentifier, call, action.value_or("askedForPermission"));
  // Which action a notification is, is known only after the permission has been answered.
  if (action) logCallEndOfUnknownApplication(process_, bundleIdentifier, call.metadata, *action);
}

bool RunningCallDetector::hasRunningCall() const {
  return std::ranges::any_of(runningCallsByBundleIdentifier_, [&](const auto& call) {
    return call.second.metadata.effectiveServiceName(process_).has_value();
  });
}

std::optional<std::string> RunningCallDetector::descriptionOfRunningCalls() const {
  std::vector<const CallProperties*> calls;
  for (const auto& [identifier, call] : runningCallsByBundleIdentifier_) {
    if (call.metadata.effectiveServiceName(process_)) calls.push_back(&call);
  }
  if (calls.empty()) return std::nullopt;
  std::ranges::stable_sort(calls, {}, [](const CallProperties* call) { return call->startedAt; });
  std::vector<std::string> texts;
  texts.reserve(calls.size());
  for (const CallProperties* call : calls) {
    texts.push_back(fmt::format("{} ({})", call->metadata.timeEntryTitle(process_).value_or(""),
                                formattedCallDuration(*call)));
  }
  return fmt::format("{}", fmt::join(texts, ", "));
}

void RunningCallDetector::handleNotificationResponse(const std::string& categoryIdentifier,
                                                     const UserNotificationResponse& response,
                                                     const PropertyListDictionary& userInfo) {
  callEndedHandler_.handleNotificationResponse(categoryIdentifier, response, userInfo);
}

}  // namespace kestro
