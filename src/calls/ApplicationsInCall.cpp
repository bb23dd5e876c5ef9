#include "calls/ApplicationsInCall.h"

#include <algorithm>

#include "calls/CallServices.h"
#include "calls/CallSettings.h"
#include "calls/DisabledApplications.h"
#include "calls/MeetingTitles.h"
#include "platform/Process.h"

namespace kestro {
namespace {

using PIDAndRunningApplication = PowerManagementAssertions::PIDAndRunningApplication;

std::optional<ApplicationAndMetadata> callOf(Process& process,
                                             const PIDAndRunningApplication& application,
                                             Activity& activity) {
  const auto& settings = process.shared<CallSettings>();
  if (!application.bundleIdentifier) return std::nullopt;
  const std::string& identifier = *application.bundleIdentifier;
  if (settings.isDisabled(identifier) || isNeverInACall(identifier)) return std::nullopt;

  const auto service = process.shared<CallServices>().serviceName(identifier);
  const bool isAllowedUnknown =
      application.applicationName && settings.callDetectionEnabledForUnknownApps;
  if (!service && !isAllowedUnknown) return std::nullopt;
  return ApplicationAndMetadata{
      identifier,
      {service, application.applicationName,
       process.shared<MeetingTitles>().titleForApplication(identifier, activity),
       application.audioInAndOutAssertionsHaveBeenRecordedSeparately}};
}

bool hasAssertionOf(const PowerManagementAssertions& snapshot, std::string_view processName) {
  return std::ranges::any_of(snapshot.assertions, [&](const auto& assertion) {
    return assertion.processName && assertion.processName->find(processName) != std::string::npos;
  });
}

}  // namespace

std::vector<ApplicationAndMetadata> applicationsInCall(Process& process,
                                                       const PowerManagementAssertions& snapshot,
                                                       Activity& activity) {
  std::vector<ApplicationAndMetadata> applications;
  for (const auto& application : snapshot.appsWithMeetingRelatedPMAssertions) {
    if (auto call = callOf(process, application, activity)) applications.push_back(*call);
  }
  const auto& settings = process.shared<CallSettings>();
  if (hasAssertionOf(snapshot, "TeamViewer") && !settings.isDisabled("TeamViewer")) {
    applications.push_back({"TeamViewer", {"TeamViewer", "TeamViewer", std::nullopt, true}});
  }
  // The word is what a user's list may hold, the identifier what the notification adds to it.
  const std::string faceTime = "com.apple.FaceTime";
  if (hasAssertionOf(snapshot, "FaceTime") && !settings.isDisabled("FaceTime") &&
      !settings.isDisabled(faceTime)) {
    const auto title = process.shared<MeetingTitles>().faceTimeTitle();
    applications.push_back({faceTime, {"FaceTime", "FaceTime", title, true}});
  }
  return applications;
}

}  // namespace kestro
