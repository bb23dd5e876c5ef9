#include "app/KSHelperAppDelegate.h"

#include "app/MainMenu.h"
#include "app/ScriptingCommands.h"
#include "platform/AppleEvents.h"
#include "probe/KSInfoExtractor.h"

namespace kestro {

KSHelperAppDelegate::KSHelperAppDelegate(Process& process)
    : process_(process),
      probe_(process.shared<KSInfoExtractor>()),
      statusMenu_(makeMainMenu(process)) {}

KSHelperAppDelegate::~KSHelperAppDelegate() {
  auto& infoLogger = process_.shared<InfoLogger>();
  infoLogger.setCallDetector(nullptr);
  infoLogger.setInfoExtractor(nullptr);
  infoLogger.setPresenter(nullptr);
  StatusItemInfoProvider::sharedInstance(process_).setPresenter(nullptr);
  SCEvents::sharedPathWatcher(process_).setDelegate(nullptr);
  process_.platform().runLoop.setTerminationHandler(nullptr);
  process_.platform().appleEvents.setGetURLHandler(nullptr);
  process_.platform().appleEvents.setCommandHandler(nullptr);
  process_.platform().controlService.setDelegate(nullptr);
}

void KSHelperAppDelegate::applicationDidFinishLaunching() {
  AppleEvents& appleEvents = process_.platform().appleEvents;
  appleEvents.setGetURLHandler(
      [this](const std::string& address) { URLHandler::handleGetURL(process_, address); });
  appleEvents.setCommandHandler(
      [this](const std::string& implementingClass, const PropertyListDictionary& arguments) {
        performScriptingCommand(*this, implementingClass, arguments);
      });
  process_.platform().controlService.setDelegate(this);
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
