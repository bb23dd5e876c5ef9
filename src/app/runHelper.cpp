#include "app/runHelper.h"

#include "app/KSHelperAppDelegate.h"
#include "platform/Desktop.h"
#include "platform/RunLoop.h"
#include "platform/Transcript.h"
#include "probe/KSInfoExtractor.h"

namespace kestro {
namespace {

// What the probe has counted.
PropertyListDictionary fieldsOf(const InfoLoggerAccessibilityStatsProvider& statistics) {
  PropertyListDictionary fields;
  fields.set("numberOfTimesWeHaveSeenAlwaysIgnoredApplications",
             statistics.numberOfTimesWeHaveSeenAlwaysIgnoredApplications());
  fields.setIfPresent("lastAlwaysIgnoredApplication", statistics.lastAlwaysIgnoredApplication());
  fields.set("hasEnteredAccessibilityBranchAtAll", statistics.hasEnteredAccessibilityBranchAtAll());
  fields.set("hasSuccessfullyFetchedAccessibilityApplication",
             statistics.hasSuccessfullyFetchedAccessibilityApplication());
  fields.set("hasSuccessfullyFetchedAccessibilityWindow",
             statistics.hasSuccessfullyFetchedAccessibilityWindow());
  fields.setIfPresent("lastSuccessfulAccessibilityWindowFetch",
                      statistics.lastSuccessfulAccessibilityWindowFetch());
  fields.set("unsuccessfulWindowFetchesSinceLastSuccessful",
             statistics.unsuccessfulWindowFetchesSinceLastSuccessful());
  fields.setIfPresent("lastApplicationWithoutWindow", statistics.lastApplicationWithoutWindow());
  fields.set("lastWindowFetchError", statistics.lastWindowFetchError());
  fields.set("hasSuccessfullyUsedAccessibility", statistics.hasSuccessfullyUsedAccessibility());
  return fields;
}

int runUntilExit(Process& process) {
  KSHelperAppDelegate delegate(process);
  const auto exitStatus =
      delegate.awakeFromNib([&delegate] { delegate.applicationDidFinishLaunching(); });
  if (exitStatus) return *exitStatus;
  return process.platform().runLoop.run();
}

int runProcessLife(Platform& platform) {
  Process process(platform);
  const auto& probe = process.shared<KSInfoExtractor>();  // before anything else: the registry
  const int exitStatus = runUntilExit(process);
  if (platform.transcript.isActive()) {
    platform.transcript.record("statistics", fieldsOf(probe.accessibilityStatistics()));
  }
  return exitStatus;
}

}  // namespace

int runHelper(Desktop& desktop) {
  int exitStatus = 0;
  do {
    exitStatus = runProcessLife(desktop.platform());
    desktop.platform().transcript.record("exit", {{"status", exitStatus}});
  } while (desktop.beginNextProcessLife());
  return exitStatus;
}

}  // namespace kestro
