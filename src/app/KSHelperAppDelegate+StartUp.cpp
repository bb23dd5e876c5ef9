// From the first line of code to a running helper.
#include <filesystem>

#include "app/DatabaseSetup.h"
#include "app/KSHelperAppDelegate.h"
#include "app/LaunchSwitches.h"
#include "app/diagnostics/AccessibilityDumper.h"
#include "calls/PowerManagementDumper.h"
#include "calls/RunningCallDetector.h"
#include "platform/Clock.h"
#include "platform/ControlService.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

namespace kestro {
namespace {

constexpr Seconds usualFirstSyncDelay{15};
constexpr Seconds syncDispatchDelay{0.1};
constexpr Seconds backupDelay{270};
constexpr Seconds accessibilityCheckDelay{300};
constexpr Seconds pauseBeforeWindowDump{3};  // to bring the window into the wanted state
constexpr Seconds pauseAfterCrash{50};
constexpr Seconds shortestTimeBetweenCrashes{86400};
constexpr double greatestRandom = 2147483647;
constexpr double usualMaxStatusItemWidth = 200;
constexpr Seconds periodicRelaunchDelay{60};
constexpr int interruptedStatus = 1;
constexpr const char* relaunchIntervalKey = "KSHelperAppDelegate_relaunchInterval";

double numberOf(const UserDefaults& defaults, const char* key) {
  return defaults.number(key).value_or(0);
}

// Absent: no bound.
std::optional<double> maxStatusItemWidth(const UserDefaults& defaults) {
  const double width = numberOf(defaults, "KSHelperAppDelegate_maxStatusItemWidth");
  if (width < 0) return std::nullopt;
  return width > 0 ? width : usualMaxStatusItemWidth;
}

// The diagnostic that the process was started for; false when it was not.
class DumpPerformer {
 public:
  explicit DumpPerformer(Process& process) : process_(process) {}

  bool operator()(const NormalLaunch&) const { return false; }
  bool operator()(const CrashRecoveryLaunch&) const { return false; }
  bool operator()(const AssertionDumpLaunch&) const {
    PowerManagementDumper::dumpPowerManagementAssertions(process_);
    return true;
  }
  bool operator()(const WindowDumpLaunch& launch) const {
    process_.platform().runLoop.sleep(pauseBeforeWindowDump);
    AccessibilityDumper::dumpWindowsForApplicationWithBundleIdentifier(
        process_, launch.bundleIdentifier, launch.searchQuery);
    return true;
  }
  bool operator()(const IconDumpLaunch& launch) const {
    AccessibilityDumper::dumpIconForApplicationWithPossibleBundleIdentifier(
        process_, launch.bundleIdentifier);
    return true;
  }

 private:
  Process& process_;
};

}  // namespace

std::optional<int> KSHelperAppDelegate::awakeFromNib(RunLoop::Task didFinishLaunching) {
  MainAppPreferences::sharedInstance(process_);
  HelperPreferences::sharedInstance(process_);
  HelperHelper::activateLogging(process_);
  PrewarmCoordinator::warmUp(process_);
  HelperHelper::applyForcedAppearance(process_);
  if (const auto exitStatus = performLaunch()) return exitStatus;
  currentAppBuild_ = process_.platform().mainBundle.build;
  // The user may take as long as they like over the questions; tracking starts after them.
  askToLaunchAtLogin([this, then = std::move(didFinishLaunching)] {
    askForAccessibility([this, then] {
      finishLaunching();
      then();
    });
  });
  return std::nullopt;
}

void KSHelperAppDelegate::finishLaunching() {
  createStatusItem();
  observations_.push_back(process_.platform().notificationCenter.observe(
      sessionNotification::activeSpaceDidChange, [this](const auto&) {
        StatusItemInfoProvider::sharedInstance(process_).dispatchStatusUpdateRequest(false);
      }));
  wireTrackingLoop();
  watchExecutable();
  observeTimerRequests();
  updateStartTaskShortcut();
  setUpDatabase();
  auto& helperHelper = HelperHelper::sharedInstance(process_);
  helperHelper.searchForOtherRunningHelpersAndMaybeDisplayAWarning();
  TaskActivityQuickStartProvider::sharedInstance(process_);
  helperHelper.logLaunchStatistics();
  scheduleFirstSync();
  scheduleLaunchTasks();
  helperHelper.initializeHelper();
  MCPServerHelperBridge::shared(process_).startIfAllowed();
  observations_.push_back(process_.platform().notificationCenter.observe(
      sessionNotification::interfaceThemeChanged,
      [this](const auto&) { updateStatusItemProperties(); }));
  UpdateHandler::sharedInstance(process_);
  helperHelper.maybeCheckForUpdatesAfterLaunch();
  schedulePeriodicRelaunch();
  HelperHelper::activateRetentionHeartbeat(process_);
  process_.platform().runLoop.setTerminationHandler([this] { terminate(); });
}

std::optional<int> KSHelperAppDelegate::performLaunch() {
  const Launch launch = launchOf(process_.platform().arguments);
  if (std::holds_alternative<CrashRecoveryLaunch>(launch)) return guardAgainstCrashLoop();
  if (!std::visit(DumpPerformer(process_), launch)) return std::nullopt;
  if (process_.platform().runLoop.isTerminationPending()) {
    process_.platform().log.write("Dump interrupted; what it shows is not all there is.");
    return interruptedStatus;
  }
  process_.platform().log.write("Dump finished; exiting.");
  return 0;
}

// A second crash within a day ends the process; whoever starts it anew notes the time of a crash.
std::optional<int> KSHelperAppDelegate::guardAgainstCrashLoop() {
  const auto stored = process_.platform().defaults.standard().value("_currentDate");
  const Date* lastCrash = stored ? stored->get<Date>() : nullptr;
  const bool isSuccessful =
      !lastCrash || process_.platform().clock.now() - *lastCrash >= shortestTimeBetweenCrashes;
  AnalyticsWrapper::logEvent(process_, "KSHelperAppDelegate.awakeFromNib.fromCrashRecovery",
                             {{"successful", isSuccessful ? 1 : 0}}, true);
  process_.platform().runLoop.sleep(pauseAfterCrash);
  return isSuccessful ? std::nullopt : std::optional(0);
}

void KSHelperAppDelegate::createStatusItem() {
  UserDefaults& defaults = process_.platform().defaults.standard();
  StatusItemProperties properties;
  properties.autosaveName = process_.platform().mainBundle.identifier + ".mainStatusItem";
  properties.maxWidth = maxStatusItemWidth(defaults);
  properties.alignment = TextAlignment::right;
  properties.truncation = TextTruncation::middle;
  statusItem_ = process_.platform().statusBar.makeStatusItem(std::move(properties), *this);
  if (isFlagSet("KSHelperAppDelegate_dontObserveStatusItemEffectiveAppearance")) return;
  statusItem_->observeEffectiveAppearance([this] { effectiveAppearanceChanged(); });
}

void KSHelperAppDelegate::wireTrackingLoop() {
  auto& infoLogger = process_.shared<InfoLogger>();
  infoLogger.setPresenter(this);
  infoLogger.setInfoExtractor(this);
  infoLogger.setCallDetector(&RunningCallDetector::sharedInstance(process_));
  infoLogger.setShouldTrack(true);
  StatusItemInfoProvider::sharedInstance(process_).setPresenter(this);
  updateStatusItemProperties();
}

void KSHelperAppDelegate::watchExecutable() {
  SCEvents& watcher = SCEvents::sharedPathWatcher(process_);
  watcher.setDelegate(this);
  const std::filesystem::path executable = process_.platform().mainBundle.executablePath;
  watcher.startWatchingPaths({executable.parent_path().string()});
}

void KSHelperAppDelegate::observeTimerRequests() {
  NotificationCenter& center = process_.platform().notificationCenter;
  observations_.push_back(center.observe(
      productNotification::runningCallsDidChange,
      [this](const auto&) { process_.platform().controlService.statusMayHaveChanged(); }));
  observations_.push_back(center.observe(OngoingTaskActivityManager::startTaskRequestedNotification,
                                         [this](const auto&) { startTask(); }));
  observations_.push_back(center.observe(HelperHelper::fullStateReloadNotification,
                                         [this](const auto&) { updateStartTaskShortcut(); }));
}

void KSHelperAppDelegate::setUpDatabase() {
  if (DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process_)) {
    return prepareDatabase(*database);
  }
  // A locked one, or one on a disk that is not there yet, opens later.
  observations_.push_back(process_.platform().notificationCenter.observe(
      DatabaseWrapper::didOpenNotification, [this](const auto&) {
        if (DatabaseWrapper* database = DatabaseWrapper::openSharedInstance(process_)) {
          prepareDatabase(*database);
        }
      }));
}

void KSHelperAppDelegate::prepareDatabase(DatabaseWrapper& database) {
  generateAllSampleDataIfNeeded(process_, database);
  setupPostSyncUpdater(process_, database);
}

void KSHelperAppDelegate::scheduleFirstSync() {
  const double given = numberOf(process_.platform().defaults.standard(), "initialSyncDelay");
  const Seconds delay = given != 0 ? Seconds(given) : usualFirstSyncDelay;
  const Seconds fraction(static_cast<double>(process_.platform().random()) / greatestRandom);
  scheduleOnce(delay + fraction, [this] {
    DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process_);
    if (database) database->syncManager().dispatchSyncRequest(syncDispatchDelay);
  });
}

void KSHelperAppDelegate::scheduleLaunchTasks() {
  scheduleOnce(backupDelay, [this] {
    DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process_);
    if (database) database->createAutomaticBackup();
  });
  scheduleOnce(accessibilityCheckDelay, [this] {
    HelperHelper::sharedInstance(process_).checkForAccessibilitySuccess(
        accessibilityStatsProvider());
  });
}

void KSHelperAppDelegate::schedulePeriodicRelaunch() {
  const double interval = numberOf(process_.platform().defaults.standard(), relaunchIntervalKey);
  if (!(interval > 0)) return;
  scheduleOnce(Seconds(interval), [this] {
    relaunchWithDelay(periodicRelaunchDelay, {{"reason", relaunchIntervalKey}});
  });
}

void KSHelperAppDelegate::scheduleOnce(Seconds delay, RunLoop::Task task) {
  const std::uint64_t number = ++lastOneShotTimer_;
  oneShotTimers_[number] =
      process_.platform().runLoop.scheduleAfter(delay, [this, number, task = std::move(task)] {
        const auto timer = oneShotTimers_.extract(number);  // stays until the task is done
        task();
      });
}

}  // namespace kestro
