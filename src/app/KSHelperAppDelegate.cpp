#include "app/KSHelperAppDelegate.h"

#include "calls/RunningCallDetector.h"
#include "platform/RunLoop.h"
#include "platform/Transcript.h"
#include "probe/KSInfoExtractor.h"

namespace kestro {
namespace {

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

}  // namespace

KSHelperAppDelegate::KSHelperAppDelegate(Process& process)
    : process_(process), probe_(process.shared<KSInfoExtractor>()) {}

KSHelperAppDelegate::~KSHelperAppDelegate() {
  process_.shared<InfoLogger>().setCallDetector(nullptr);
  process_.shared<InfoLogger>().setInfoExtractor(nullptr);
  process_.platform().runLoop.setTerminationHandler(nullptr);
}

void KSHelperAppDelegate::awakeFromNib() {
  process_.platform().runLoop.setTerminationHandler([this] { applicationShouldTerminate(); });
  auto& infoLogger = process_.shared<InfoLogger>();
  infoLogger.setInfoExtractor(this);
  infoLogger.setCallDetector(&RunningCallDetector::sharedInstance(process_));
  infoLogger.setShouldTrack(true);
}

void KSHelperAppDelegate::applicationShouldTerminate() {
  process_.shared<InfoLogger>().prepareForShutdown(false);
  applicationWillTerminate();
  process_.platform().runLoop.stop(0);
}

void KSHelperAppDelegate::applicationWillTerminate() {
  Transcript& transcript = process_.platform().transcript;
  if (transcript.isActive())
    transcript.record("statistics", fieldsOf(accessibilityStatsProvider()));
}

std::optional<Activity> KSHelperAppDelegate::getCurrentActivity() {
  return probe_.currentActivity();
}

void KSHelperAppDelegate::callInfoExtractorFor(Activity& activity) {
  probe_.callInfoExtractorForActivity(activity);
}

const std::set<std::string>& KSHelperAppDelegate::noAccessibilityApplicationBundleIdentifiers() {
  return probe_.noAccessibilityApplicationBundleIdentifiers();
}

const InfoLoggerAccessibilityStatsProvider& KSHelperAppDelegate::accessibilityStatsProvider() {
  return probe_.accessibilityStatistics();
}

}  // namespace kestro
