#include "calls/CallEvents.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "foundation/TextCase.h"
#include "platform/Process.h"
#include "platform/Transcript.h"
#include "product/KestroDatabase.h"
#include "product/KestroLegacy.h"

namespace kestro {
namespace {

using Frequency = AnalyticsWrapper::SamplingFrequency;
using Flags = AnalyticsWrapper::Flags;

void log(Process& process, std::string_view event, PropertyListDictionary attributes,
         Frequency frequency = Frequency::always, Flags flags = Flags::sensitive) {
  AnalyticsWrapper::logEvent(process, fmt::format("RunningCallDetector.{}", event),
                             std::move(attributes), frequency, flags);
}

double roundedDuration(const CallProperties& call) {
  return AnalyticsWrapper::roundNumberToLogScale(call.duration().count());
}

// Browsers are in calls of services that are not theirs.
bool isBrowserLike(Process& process, const std::string& bundleIdentifier) {
  const std::string identifier = lowercased(bundleIdentifier);
  const auto has = [&](std::string_view part) {
    return identifier.find(part) != std::string::npos;
  };
  if (has("firefox") || has("mozilla") || has("stack.io")) return true;
  return std::ranges::any_of(ApplicationList::webBrowsing(process),
                             [&](const std::string& browser) { return has(lowercased(browser)); });
}

void logUnknownApplication(Process& process, std::string_view event,
                           const std::string& bundleIdentifier,
                           const std::optional<std::string>& appName,
                           const std::optional<std::string>& actionTaken) {
  if (isBrowserLike(process, bundleIdentifier)) return;
  PropertyListDictionary attributes{{"bundleIdentifier", bundleIdentifier},
                                    {"appName", orNil(appName)}};
  attributes.setIfPresent("actionTaken", actionTaken);
  log(process, fmt::format("{}.forUnknownApplication", event), std::move(attributes));
}

PropertyListDictionary offeredCall(Process& process, const std::string& bundleIdentifier,
                                   const CallProperties& call) {
  return {{"bundleIdentifier", bundleIdentifier},
          {"effectiveServiceName", orNil(call.metadata.effectiveServiceName(process))},
          {"duration", roundedDuration(call)}};
}

void record(Process& process, PropertyListDictionary fields, const CallProperties& call) {
  fields.set("startedAt", call.startedAt);
  fields.set("lastSeen", call.lastSeen);
  fields.setIfPresent("serviceName", call.metadata.serviceName);
  fields.setIfPresent("appName", call.metadata.appName);
  fields.setIfPresent("meetingTitle", call.metadata.meetingTitle);
  fields.set("audioInAndOutAssertionsHaveBeenRecordedSeparately",
             call.metadata.audioInAndOutAssertionsHaveBeenRecordedSeparately);
  process.platform().transcript.record("call", std::move(fields));
}

}  // namespace

std::string orNil(const std::optional<std::string>& text) {
  return text.value_or("(nil)");
}

std::string formattedCallDuration(const CallProperties& call) {
  return DurationFormatter::format(call.duration(), DurationFormatter::Style::compact);
}

void logMeetingAssertionDetected(Process& process, const std::string& bundleIdentifier,
                                 const std::optional<std::string>& applicationName) {
  log(process, "meetingPMAssertionDetected",
      {{"bundleIdentifier", bundleIdentifier}, {"applicationName", orNil(applicationName)}});
}

void logMultipleParallelAssertions(Process& process,
                                   const std::vector<std::string>& sortedBundleIdentifiers) {
  log(process, "multipleParallelPMAssertionsDetected",
      {{"numberOfParallelPMAssertions", sortedBundleIdentifiers.size()},
       {"bundleIdentifiers", fmt::format("{}", fmt::join(sortedBundleIdentifiers, ","))}});
}

void logCallStart(Process& process, const std::string& bundleIdentifier,
                  const CallMetadata& metadata) {
  log(process, "callStartDetected", {{"bundleIdentifier", bundleIdentifier}}, Frequency::medium);
  if (metadata.serviceName) return;
  logUnknownApplication(process, "callStartDetected", bundleIdentifier, metadata.appName,
                        std::nullopt);
}

void logCallEnd(Process& process, const std::string& bundleIdentifier, const CallProperties& call) {
  const CallMetadata& metadata = call.metadata;
  PropertyListDictionary attributes{{"bundleIdentifier", bundleIdentifier},
                                    {"appName", orNil(metadata.appName)},
                                    {"appNamePresent", metadata.appName.has_value()},
                                    {"serviceName", orNil(metadata.serviceName)},
                                    {"serviceNamePresent", metadata.serviceName.has_value()},
                                    {"meetingTitlePresent", metadata.meetingTitle.has_value()},
                                    {"duration", roundedDuration(call)}};
  if (metadata.meetingTitle) {
    attributes.set("bundleIdentifier_meetingTitlePresent", bundleIdentifier);
  }
  if (metadata.serviceName) attributes.set("bundleIdentifier_serviceNamePresent", bundleIdentifier);
  log(process, "callEndDetected", std::move(attributes), Frequency::medium);
}

void logCallEndOfUnknownApplication(Process& process, const std::string& bundleIdentifier,
                                    const CallMetadata& metadata, const std::string& actionTaken) {
  if (metadata.serviceName) return;
  logUnknownApplication(process, "callEndDetected", bundleIdentifier, metadata.appName,
                        actionTaken);
}

void logCallEndedNotification(Process& process, const std::string& bundleIdentifier,
                              const CallProperties& call) {
  log(process, "presentCallEndedNotification", offeredCall(process, bundleIdentifier, call));
}

void logTimeEntryStarted(Process& process, const std::string& bundleIdentifier,
                         const CallProperties& call) {
  log(process, "createTask.started", offeredCall(process, bundleIdentifier, call));
}

void logTimeEntrySaved(Process& process, const std::string& bundleIdentifier,
                       const CallProperties& call) {
  log(process, "createTask.saved", offeredCall(process, bundleIdentifier, call));
}

void logNotificationResponse(Process& process, const std::string& action) {
  log(process, "notificationResponse", {{"action", action}}, Frequency::always, Flags::none);
}

void logDoNotAskAgainForThisApp(Process& process, const std::string& bundleIdentifier,
                                const std::optional<CallProperties>& call) {
  const CallMetadata metadata = call ? call->metadata : CallMetadata{};
  log(process, "doNotAskAgainForThisApp",
      {{"bundleIdentifier", bundleIdentifier},
       {"appName", orNil(metadata.appName)},
       {"serviceName", orNil(metadata.serviceName)}});
}

void logDoNotAskAgainForUnknownApp(Process& process, const std::string& userInfoKeys) {
  log(process, "doNotAskAgainForThisApp.missingBundleIdentifier", {{"userInfoKeys", userInfoKeys}},
      Frequency::always, Flags::none);
}

void recordCallStart(Process& process, const std::string& bundleIdentifier,
                     const CallProperties& call) {
  if (!process.platform().transcript.isActive()) return;
  record(process, {{"started", bundleIdentifier}}, call);
}

void recordCallEnd(Process& process, const std::string& bundleIdentifier,
                   const CallProperties& call, const std::string& action) {
  if (!process.platform().transcript.isActive()) return;
  record(process, {{"ended", bundleIdentifier}, {"action", action}}, call);
}

}  // namespace kestro
