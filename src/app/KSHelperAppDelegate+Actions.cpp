// What the rows of the menu do.
#include <algorithm>

#include "app/KSHelperAppDelegate.h"
#include "platform/Clock.h"
#include "platform/ControlService.h"
#include "platform/Transcript.h"
#include "platform/Workspace.h"

namespace kestro {

void KSHelperAppDelegate::menuWillOpen(bool isOptionKeyHeld) {
  HelperHelper::logEvent(process_, "Setapp.Interaction.menuWillOpen", {});
  StatusItemInfoProvider::sharedInstance(process_).setStatusItemHighlighted(true);
  process_.shared<InfoLogger>().statusItemClicked();
  updateStatusItemProperties();
  TaskActivityQuickStartProvider::sharedInstance(process_).insertQuickStartMenuItems(statusMenu_);
  if (isOptionKeyHeld) startMainApplication();
}

void KSHelperAppDelegate::menuDidClose() {
  StatusItemInfoProvider::sharedInstance(process_).setStatusItemHighlighted(false);
  updateStatusItemProperties();
}

// Information rows are in the menu to be read.
const std::vector<KSHelperAppDelegate::Action>& KSHelperAppDelegate::actions() {
  using Delegate = KSHelperAppDelegate;
  static const std::vector<Action> actions{
      {"toggleTracking:", &Delegate::toggleTracking},
      {"startTask:", &Delegate::startTask},
      {"stopTask:", &Delegate::stopTask},
      {"editRunningOrLatestTask:", &Delegate::editRunningOrLatestTask},
      {"toggleAutomaticLaunch:", &Delegate::toggleAutomaticLaunch},
      {"toggleAskAfterIdle:", &Delegate::toggleAskAfterIdle},
      {"startMainApplication:", &Delegate::startMainApplication},
      {"askToQuit:", &Delegate::askToQuit},
      {"relaunch:", &Delegate::relaunch},
  };
  return actions;
}

void KSHelperAppDelegate::perform(const std::string& action, std::int64_t tag) {
  if (action == "pauseTrackingFor:") return pauseTrackingForTime(Seconds(tag));
  if (action == TaskActivityQuickStartProvider::action) {
    return TaskActivityQuickStartProvider::sharedInstance(process_).start(tag);
  }
  const auto found = std::ranges::find(actions(), action, &Action::name);
  if (found != actions().end()) (this->*found->perform)();
}

// A pending resume is dropped: a new pause replaces the old one.
void KSHelperAppDelegate::setShouldTrack(bool shouldTrack) {
  if (isTerminating_) return;
  resumeTrackingTimer_.reset();
  process_.shared<InfoLogger>().setShouldTrack(shouldTrack);
  updateStatusItemTransparency();
}

void KSHelperAppDelegate::resumeTracking() {
  setShouldTrack(true);
  recordTracking();
}

void KSHelperAppDelegate::pauseTrackingForTime(Seconds duration) {
  setShouldTrack(false);
  if (duration > Seconds(0) && !isTerminating_) startResumeTimer(duration);
  recordTracking();
}

void KSHelperAppDelegate::startResumeTimer(Seconds duration) {
  constexpr Seconds longestPause{1e8};  // so that the sum stays a date
  const Date fireDate = process_.platform().clock.now() +
                        std::chrono::round<Date::duration>(std::min(duration, longestPause));
  resumeTrackingTimer_ = ResumeTimer{
      fireDate, process_.platform().runLoop.scheduleAt(fireDate, [this] { resumeTracking(); })};
}

void KSHelperAppDelegate::recordTracking() const {
  process_.platform().controlService.statusMayHaveChanged();
  Transcript& transcript = process_.platform().transcript;
  if (isTerminating_ || !transcript.isActive()) return;
  PropertyListDictionary fields{{"on", process_.shared<InfoLogger>().shouldTrack()}};
  if (resumeTrackingTimer_) fields.set("resumesAt", resumeTrackingTimer_->fireDate);
  transcript.record("tracking", std::move(fields));
}

void KSHelperAppDelegate::toggleTracking() {
  if (!process_.shared<InfoLogger>().shouldTrack()) return resumeTracking();
  pauseTrackingForTime(HelperHelper::sharedInstance(process_).secondsUntilTomorrow());
}

// Absent without a database or an activity writer.
std::optional<OngoingTaskActivityManager> KSHelperAppDelegate::taskActivityManager() const {
  DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process_);
  const ActivityWriter* writer = database ? database->activityWriter() : nullptr;
  return writer ? std::optional(writer->ongoingTaskActivityManager()) : std::nullopt;
}

bool KSHelperAppDelegate::hasRunningTask() const {
  const auto manager = taskActivityManager();
  return manager && manager->hasRunningActivity();
}

void KSHelperAppDelegate::startTask() {
  HelperHelper::logEvent(process_, "Setapp.Interaction.startTask", {});
  updateStatusItemVisibility();
  if (const auto manager = taskActivityManager()) manager->showEditorToStartTaskActivity();
}

void KSHelperAppDelegate::stopTask() {
  if (const auto manager = taskActivityManager()) manager->stopRunningActivity(true, false);
}

void KSHelperAppDelegate::startOrStopTask() {
  if (hasRunningTask()) return stopTask();
  startTask();
}

void KSHelperAppDelegate::editRunningOrLatestTask() {
  if (const auto manager = taskActivityManager()) manager->editRunningOrLatestTask();
}

void KSHelperAppDelegate::toggleAutomaticLaunch() {
  KSStartupManager::setShouldStartAtLogin(process_,
                                          !KSStartupManager::shouldStartAtLogin(process_));
}

void KSHelperAppDelegate::toggleAskAfterIdle() {
  const auto& preferences = process_.shared<HelperPreferences>();
  preferences.setShouldAskForTaskAfterIdle(!preferences.shouldAskForTaskAfterIdle());
}

void KSHelperAppDelegate::startMainApplication() {
  Workspace& workspace = process_.platform().workspace;
  const std::string identifier = KSHelper::mainAppBundleIdentifierForLaunching();
  if (const auto path = workspace.applicationPath(identifier)) workspace.openApplication(*path);
}

}  // namespace kestro
