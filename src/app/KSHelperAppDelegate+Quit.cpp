// Quitting from the menu, and the orderly end of the process.
#include "app/KSHelperAppDelegate.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/LocalizedStrings.h"
#include "platform/UserDefaults.h"

namespace kestro {
namespace {

constexpr const char* quitWithoutAskingKey = "shouldQuitHelperFromMenuItem";
constexpr const char* lastManualQuitsKey = "KSHelperAppDelegate_lastManualQuits";
constexpr std::size_t mostManualQuits = 5;
constexpr Seconds longestFlush{5};

Alert quitAlert(Process& process) {
  return {
      localizedString(process, "Do you really wish to quit the Kestro tracker app?"),
      localizedString(process,
                      "Kestro can only track your activities while the tracker app is "
                      "running."),
      {localizedString(process, "Keep Tracking"), localizedString(process, "Quit Kestro Tracker")},
      true,
      true};
}

}  // namespace

void KSHelperAppDelegate::askToQuit() {
  if (isFlagSet(quitWithoutAskingKey)) return quit();
  Alerts& alerts = process_.platform().alerts;
  if (std::exchange(isAskingToQuit_, true)) return alerts.bringToFront();
  alerts.present(quitAlert(process_), [this](const AlertAnswer& answer) {
    isAskingToQuit_ = false;
    if (answer.suppressionIsChecked) {
      process_.platform().defaults.standard().set(quitWithoutAskingKey, true);
    }
    if (answer.button != 0) quit();
  });
}

void KSHelperAppDelegate::quit() {
  logQuitEvent();
  terminate();
}

void KSHelperAppDelegate::logQuitEvent() {
  HelperHelper::logEvent(process_, "KSHelperAppDelegate.quitManually", {}, true);
  UserDefaults& defaults = process_.platform().defaults.standard();
  const auto stored = defaults.value(lastManualQuitsKey);
  const auto* earlier = stored ? stored->get<PropertyListArray>() : nullptr;
  PropertyListArray quits = earlier ? *earlier : PropertyListArray();
  quits.insert(quits.begin(), process_.platform().clock.now());
  if (quits.size() > mostManualQuits) quits.pop_back();
  defaults.set(lastManualQuitsKey, std::move(quits));
  defaults.synchronize();
}

void KSHelperAppDelegate::terminate() {
  if (std::exchange(isTerminating_, true)) return;
  resumeTrackingTimer_.reset();
  updateCheck_.reset();
  oneShotTimers_.clear();
  if (applicationShouldTerminate() == TerminateReply::now) replyToApplicationShouldTerminate();
}

KSHelperAppDelegate::TerminateReply KSHelperAppDelegate::applicationShouldTerminate() {
  observations_.push_back(process_.platform().notificationCenter.observe(
      ActivityWriter::flushAndSyncFinishedNotification,
      [this](const auto&) { replyToApplicationShouldTerminate(); }));
  if (!process_.shared<InfoLogger>().prepareForShutdown(false)) return TerminateReply::now;
  terminationReply_ = process_.platform().runLoop.scheduleAfter(
      longestFlush, [this] { replyToApplicationShouldTerminate(); });
  return TerminateReply::later;
}

// The first reply ends the wait.
void KSHelperAppDelegate::replyToApplicationShouldTerminate() {
  if (std::exchange(isTerminated_, true)) return;
  applicationWillTerminate();
  process_.platform().runLoop.stop(0);
}

void KSHelperAppDelegate::applicationWillTerminate() {
  DatabaseWrapper::clearSharedInstance(process_);
}

}  // namespace kestro
