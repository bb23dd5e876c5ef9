// What other programs are told and may ask for.
#include "app/KSHelperAppDelegate.h"
#include "platform/Clock.h"

namespace kestro {
namespace {

std::optional<std::string> givenText(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional(text);
}

}  // namespace

ControlStatus KSHelperAppDelegate::controlStatus() {
  ControlStatus status;
  const auto& infoLogger = process_.shared<InfoLogger>();
  status.isTracking = infoLogger.shouldTrack();
  if (resumeTrackingTimer_) status.pausedUntil = resumeTrackingTimer_->fireDate;
  const auto manager = taskActivityManager();
  const auto timer = manager ? manager->runningTimer() : std::nullopt;
  if (timer) status.timerStarted = timer->start;
  status.isInCall = infoLogger.hasRunningCall();
  return status;
}

Seconds KSHelperAppDelegate::trackedTimeToday() {
  return timeTrackedToday(process_).value_or(Seconds(0));
}

ControlOutcome KSHelperAppDelegate::startTimer(const std::string& title,
                                               const std::string& project) {
  const auto manager = taskActivityManager();
  if (!manager) return ControlOutcome::noDatabase;
  manager->startTaskActivity(
      {process_.platform().clock.now(), givenText(title), givenText(project)});
  return ControlOutcome::done;
}

ControlOutcome KSHelperAppDelegate::stopTimer() {
  const auto manager = taskActivityManager();
  if (!manager) return ControlOutcome::noDatabase;
  if (!manager->hasRunningActivity()) return ControlOutcome::noTimer;
  manager->stopRunningActivity(/*showNotification=*/false, /*autoStopped=*/false);
  return ControlOutcome::done;
}

}  // namespace kestro
