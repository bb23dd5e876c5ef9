// The helper's one application delegate: start-up, the status item and its menu, quitting,
// relaunching, updates, and the wiring of probe and call detector into the product's tracking loop.
// Lives as long as the process life it is made for; main thread only.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fsevents/SCEvents.h"
#include "platform/ControlService.h"
#include "platform/NotificationCenter.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "platform/StatusBar.h"
#include "product/KestroLegacy.h"
#include "product/KestroUI.h"

namespace kestro {

class KSInfoExtractor;
struct Alert;

class KSHelperAppDelegate final : public InfoLoggerPresenter,
                                  public InfoLoggerExtractor,
                                  public StatusItemPresenter,
                                  public StatusItemDelegate,
                                  public ControlDelegate,
                                  public SCEventListenerProtocol {
 public:
  explicit KSHelperAppDelegate(Process& process);
  ~KSHelperAppDelegate() override;
  KSHelperAppDelegate(const KSHelperAppDelegate&) = delete;
  KSHelperAppDelegate& operator=(const KSHelperAppDelegate&) = delete;

  // The start-up sequence, which ends with tracking switched on, after the questions of a first
  // start; the task is called then, perhaps before the return. Returns the exit status when the
  // process is to end at once instead: after a diagnostic dump, or when it keeps crashing.
  std::optional<int> awakeFromNib(RunLoop::Task didFinishLaunching);
  void applicationDidFinishLaunching();

  // For the tracking loop.
  std::optional<Activity> getCurrentActivity() override;
  void callInfoExtractorFor(Activity& activity) override;
  const std::set<std::string>& noAccessibilityApplicationBundleIdentifiers() override;
  const InfoLoggerAccessibilityStatsProvider& accessibilityStatsProvider() override;
  // Blocks for about three seconds.
  void relaunchWithDelay(Seconds delay, PropertyListDictionary attributes) override;

  // For those who present tracking. The rows are those of resources/MainMenu.json.
  void updateStatusItemProperties() override;
  void updateStatusItemTransparency() override;
  void updateSyncStatusItemWithTitle(const std::optional<std::string>& title) override;

  // For the menu.
  void menuWillOpen(bool isOptionKeyHeld) override;
  void menuDidClose() override;
  const Menu& validatedMenu() override;
  void perform(const std::string& action, std::int64_t tag) override;

  // For other programs.
  ControlStatus controlStatus() override;
  Seconds trackedTimeToday() override;
  ControlOutcome startTimer(const std::string& title, const std::string& project) override;
  ControlOutcome stopTimer() override;

  // Ignored once the helper is ending.
  void resumeTracking();
  // Without end unless the time is positive. Ignored once the helper is ending.
  void pauseTrackingForTime(Seconds duration);

  void pathWatcherEventOccurred(SCEvents& watcher, const SCEvent& event) override;

 private:
  // +StartUp.cpp
  std::optional<int> performLaunch();
  void finishLaunching();
  std::optional<int> guardAgainstCrashLoop();
  void createStatusItem();
  void wireTrackingLoop();
  void watchExecutable();
  void observeTimerRequests();
  void setUpDatabase();
  void prepareDatabase(DatabaseWrapper& database);
  void scheduleFirstSync();
  void scheduleLaunchTasks();
  void schedulePeriodicRelaunch();
  void scheduleOnce(Seconds delay, RunLoop::Task task);

  // +Prompts.cpp
  bool isFlagSet(const char* defaultsKey) const;
  void askToLaunchAtLogin(const RunLoop::Task& then);
  void askForAccessibility(const RunLoop::Task& then);
  void ask(const Alert& alert, const char* suppressionKey,
           const std::function<void(bool isFirstButton)>& then);

  // +StatusItem.cpp
  void effectiveAppearanceChanged();
  void updateStatusItemVisibility();
  bool shouldShowSyncStatusItem() const;
  void updateStartTaskShortcut();

  // +Validation.cpp
  using Validator = void (KSHelperAppDelegate::*)(MenuItem& item);
  struct ValidationRule {
    std::string_view action;
    Validator validate;
  };
  static const std::vector<ValidationRule>& validationRules();
  void validate(std::vector<MenuItem>& items);
  void validateMenuItem(MenuItem& item);
  void validateAutomaticLaunch(MenuItem& item);
  void validateAskAfterIdle(MenuItem& item);
  void validateToggleTracking(MenuItem& item);
  void validatePauseContainer(MenuItem& item);
  void validateInformation(MenuItem& item);
  void validateTaskInformation(MenuItem& item);
  void validateSyncStatus(MenuItem& item);
  void validateEditTask(MenuItem& item);
  void validateStartTask(MenuItem& item);
  void validateStopTask(MenuItem& item);
  std::string pauseContainerTitle() const;
  KeyEquivalent startTaskKeys() const;
  bool showsImages() const;

  // +Actions.cpp
  struct Action {
    std::string_view name;
    void (KSHelperAppDelegate::*perform)();
  };
  static const std::vector<Action>& actions();
  void toggleTracking();
  void setShouldTrack(bool shouldTrack);
  void startResumeTimer(Seconds duration);
  void recordTracking() const;
  std::optional<OngoingTaskActivityManager> taskActivityManager() const;
  bool hasRunningTask() const;
  void startTask();
  void stopTask();
  void startOrStopTask();
  void editRunningOrLatestTask();
  void toggleAutomaticLaunch();
  void toggleAskAfterIdle();
  void startMainApplication();

  // +Quit.cpp
  enum class TerminateReply { now, later };
  void askToQuit();
  void quit();
  void logQuitEvent();
  void terminate();
  TerminateReply applicationShouldTerminate();
  void replyToApplicationShouldTerminate();
  void applicationWillTerminate();

  // +Relaunch.cpp
  void relaunch();
  void relaunchInBackground(Seconds delay, PropertyListDictionary attributes);
  void handlePathWatcherEvent(const SCEvent& event);
  PropertyListDictionary updateAttributes(const SCEvent& event,
                                          const std::optional<std::string>& newBuild) const;

  struct ResumeTimer {
    Date fireDate;
    std::unique_ptr<Timer> timer;
  };

  Process& process_;
  KSInfoExtractor& probe_;
  Menu statusMenu_;
  std::unique_ptr<StatusItem> statusItem_;          // null until start-up makes it
  std::optional<ResumeTimer> resumeTrackingTimer_;  // of a timed pause
  std::optional<Date> lastEffectiveAppearanceChangeDispatched_;
  std::unique_ptr<MASShortcutBinder> editTaskShortcutBinder_;
  std::optional<std::string> currentAppBuild_;  // as read at start
  std::unique_ptr<Timer> updateCheck_;          // after the latest file event
  // Of the start and of relaunches, those that are not over.
  std::map<std::uint64_t, std::unique_ptr<Timer>> oneShotTimers_;
  std::uint64_t lastOneShotTimer_ = 0;
  std::vector<NotificationCenter::Observation> observations_;
  bool isAskingToQuit_ = false;
  bool isTerminating_ = false;
  bool isTerminated_ = false;
  std::unique_ptr<Timer> terminationReply_;
};

}  // namespace kestro
