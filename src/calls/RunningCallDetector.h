// Decides once per sample which applications are in a call, keeps a record of each running call and
// notices when one has ended. The tracking loop calls it with every sampled activity; one instance
// per process life. Main thread only. Running calls live in memory only: a restart forgets them.
//
// A step costs one question for the assertions of all processes and, while an application uses
// audio in both directions, what its meeting's title costs (MeetingTitles.h).
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "calls/CallEndedHandler.h"
#include "calls/CallMetadata.h"
#include "calls/PowerManagementAssertions.h"
#include "product/KestroDatabase.h"
#include "product/KestroUI.h"

namespace kestro {

class RunningCallDetector final : public InfoLoggerCallDetector,
                                  public UserNotificationResponseReceiver {
 public:
  static RunningCallDetector& sharedInstance(Process& process);

  // Use sharedInstance. Registers the category of its notifications.
  explicit RunningCallDetector(Process& process);

  void updateCallStatusForActivity(Activity& activity) override;
  bool detectsCallsWhenTrackingIsPaused() const override;
  // Whether a call runs that would be offered.
  bool hasRunningCall() const override;
  // "Zoom call: Weekly sync (12 min), …", the earliest first; absent when no call runs that would
  // be offered.
  std::optional<std::string> descriptionOfRunningCalls() const override;

  void handleNotificationResponse(const std::string& categoryIdentifier,
                                  const UserNotificationResponse& response,
                                  const PropertyListDictionary& userInfo) override;

 private:
  using Applications = std::vector<ApplicationAndMetadata>;

  Applications currentCalls(const PowerManagementAssertions& snapshot, Activity& activity);
  void logMeetingAssertions(const PowerManagementAssertions& snapshot);
  void logParallelCalls(const Applications& applications);
  void noteCall(const ApplicationAndMetadata& application, Date now);
  void endCallsNotSeen(Date now);
  void endCall(const std::string& bundleIdentifier, const CallProperties& call);

  Process& process_;
  CallEndedHandler callEndedHandler_;
  std::map<std::string, CallProperties> runningCallsByBundleIdentifier_;
  std::set<std::string> analyticsEventsSentForMeetingPMAssertionsWithBundleIdentifiers_;
  bool hasSentAnalyticsEventForMultipleParallelPMAssertions_ = false;
};

}  // namespace kestro
