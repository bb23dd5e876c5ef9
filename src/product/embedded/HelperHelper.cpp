#include "product/HelperHelper.h"

#include "platform/Accessibility.h"
#include "platform/Clock.h"
#include "platform/LocalizedStrings.h"
#include "platform/Process.h"
#include "platform/SystemLog.h"
#include "platform/Workspace.h"
#include "product/KestroUI.h"
#include "product/embedded/AnalyticsFile.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {

HelperHelper& HelperHelper::sharedInstance(Process& process) {
  return process.shared<HelperHelper>();
}

// Where log lines go is the platform's matter, and so is how things look.
void HelperHelper::activateLogging(Process& process) {
  recordOperation(process, "HelperHelper activateLogging");
}

void HelperHelper::applyForcedAppearance(Process& process) {
  recordOperation(process, "HelperHelper applyForcedAppearance");
}

// Nobody is told that the product is still in use.
void HelperHelper::activateRetentionHeartbeat(Process& process) {
  recordOperation(process, "HelperHelper activateRetentionHeartbeat");
}

void HelperHelper::logEvent(Process& process, std::string_view name,
                            PropertyListDictionary attributes, bool isCritical) {
  process.shared<AnalyticsFile>().record({{"through", "HelperHelper"},
                                          {"name", name},
                                          {"attributes", std::move(attributes)},
                                          {"critical", isCritical}});
}

void HelperHelper::prepareForRelaunch(Process& process) {
  recordOperation(process, "HelperHelper prepareForRelaunch");
  DatabaseWrapper* database = DatabaseWrapper::openSharedInstance(process);
  if (!database) return;
  if (ActivityWriter* writer = database->activityWriter()) writer->flush();
  database->finishMutations();
}

void HelperHelper::searchForOtherRunningHelpersAndMaybeDisplayAWarning() {
  recordOperation(process_, "HelperHelper searchForOtherRunningHelpersAndMaybeDisplayAWarning");
  const Platform& platform = process_.platform();
  if (platform.workspace.runningApplications(platform.mainBundle.identifier).size() < 2) return;
  platform.log.write("Another tracker helper is running in this session.");
}

void HelperHelper::logLaunchStatistics() {
  recordOperation(process_, "HelperHelper logLaunchStatistics");
}

void HelperHelper::initializeHelper() {
  recordOperation(process_, "HelperHelper initializeHelper");
}

void HelperHelper::maybeCheckForUpdatesAfterLaunch() {
  recordOperation(process_, "HelperHelper maybeCheckForUpdatesAfterLaunch");
}

void HelperHelper::checkForAccessibilitySuccess(
    const InfoLoggerAccessibilityStatsProvider& statistics) {
  recordOperation(process_,
                  "HelperHelper checkForAccessibilitySuccessWithAccessibilityStatsProvider");
  const bool isSuspicious = process_.platform().accessibility.isTrusted() &&
                            statistics.hasEnteredAccessibilityBranchAtAll() &&
                            !statistics.hasSuccessfullyUsedAccessibility();
  if (isSuspicious) {
    process_.platform().log.write(
        "Accessibility is permitted, but no application has shown anything so far.");
  }
}

Seconds HelperHelper::secondsUntilTomorrow() const {
  const Date now = process_.platform().clock.now();
  return process_.platform().timeZone.midnight(now, 1) - now;
}

// The first text loads the table of the user's language.
void PrewarmCoordinator::warmUp(Process& process) {
  recordOperation(process, "PrewarmCoordinator warmUp");
  localizedString(process, "OK");
}

UpdateHandler& UpdateHandler::sharedInstance(Process& process) {
  return process.shared<UpdateHandler>();
}

UpdateHandler::UpdateHandler(Process& process) {
  recordOperation(process, "UpdateHandler sharedInstance");
}

MCPServerHelperBridge& MCPServerHelperBridge::shared(Process& process) {
  return process.shared<MCPServerHelperBridge>();
}

void MCPServerHelperBridge::startIfAllowed() {
  recordOperation(process_, "MCPServerHelperBridge startIfAllowed");
}

}  // namespace kestro
