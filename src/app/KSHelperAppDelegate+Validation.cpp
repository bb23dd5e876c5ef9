// How each row of the menu is titled, shown, checked and enabled when it is shown.
#include <algorithm>

#include "app/KSHelperAppDelegate.h"
#include "platform/Clock.h"
#include "platform/LocalizedStrings.h"
#include "product/KestroDatabase.h"

namespace kestro {
namespace {

constexpr int firstVersionWithImages = 26;
constexpr const char* syncStatusPlaceholder = "Sync Status";  // in resources/MainMenu.json

}  // namespace

const Menu& KSHelperAppDelegate::validatedMenu() {
  validate(statusMenu_.items);
  return statusMenu_;
}

void KSHelperAppDelegate::validate(std::vector<MenuItem>& items) {
  for (MenuItem& item : items) {
    validateMenuItem(item);
    validate(item.submenu);
  }
}

const std::vector<KSHelperAppDelegate::ValidationRule>& KSHelperAppDelegate::validationRules() {
  using Delegate = KSHelperAppDelegate;
  static const std::vector<ValidationRule> rules{
      {"toggleAutomaticLaunch:", &Delegate::validateAutomaticLaunch},
      {"toggleAskAfterIdle:", &Delegate::validateAskAfterIdle},
      {"toggleTracking:", &Delegate::validateToggleTracking},
      {"pauseTrackingForContainer:", &Delegate::validatePauseContainer},
      {"totalTimeSpentToday:", &Delegate::validateInformation},
      {"showCurrentTaskInfo:", &Delegate::validateTaskInformation},
      {"syncStatus:", &Delegate::validateSyncStatus},
      {"editRunningOrLatestTask:", &Delegate::validateEditTask},
      {"startTask:", &Delegate::validateStartTask},
      {"stopTask:", &Delegate::validateStopTask},
  };
  return rules;
}

void KSHelperAppDelegate::validateMenuItem(MenuItem& item) {
  if (item.isSeparator || item.action.empty()) return;
  item.isEnabled = true;
  const auto rule = std::ranges::find(validationRules(), item.action, &ValidationRule::action);
  if (rule != validationRules().end()) (this->*rule->validate)(item);
}

void KSHelperAppDelegate::validateAutomaticLaunch(MenuItem& item) {
  item.isChecked = KSStartupManager::shouldStartAtLogin(process_);
}

void KSHelperAppDelegate::validateAskAfterIdle(MenuItem& item) {
  const auto& preferences = process_.shared<HelperPreferences>();
  item.isChecked = preferences.shouldAskForTaskAfterIdle();
  item.isEnabled = preferences.shouldSuspendTrackingUponIdle();
}

void KSHelperAppDelegate::validateToggleTracking(MenuItem& item) {
  const bool isTracking = process_.shared<InfoLogger>().shouldTrack();
  item.title = localizedString(process_, isTracking ? localizable("Pause until Tomorrow")
                                                    : localizable("Resume App Tracking"));
  if (showsImages()) item.image = isTracking ? "pause.circle" : "play.circle";
}

void KSHelperAppDelegate::validatePauseContainer(MenuItem& item) {
  item.title = pauseContainerTitle();
}

std::string KSHelperAppDelegate::pauseContainerTitle() const {
  const Date now = process_.platform().clock.now();
  const bool isTimed = !process_.shared<InfoLogger>().shouldTrack() && resumeTrackingTimer_ &&
                       resumeTrackingTimer_->fireDate > now;
  if (!isTimed) return localizedString(process_, "Pause App Tracking for…");
  constexpr int maxComponents = 2;
  const Seconds remaining = resumeTrackingTimer_->fireDate - now;
  return localizedFormat(
      process_, "Paused for the next %@",
      DurationFormatterBridge::shortString(process_, remaining, maxComponents, false));
}

void KSHelperAppDelegate::validateInformation(MenuItem& item) {
  item.isEnabled = false;
}

void KSHelperAppDelegate::validateTaskInformation(MenuItem& item) {
  item.isHidden = false;
  item.isEnabled = false;
}

void KSHelperAppDelegate::validateSyncStatus(MenuItem& item) {
  item.isEnabled = false;
  if (!shouldShowSyncStatusItem()) {
    item.isHidden = true;
    return;
  }
  if (item.title == syncStatusPlaceholder) {
    item.title = localizedString(process_, "Determining Sync Status…");
  }
  StatusItemInfoProvider::sharedInstance(process_).prepareSyncStatusMenuItem(nullptr);
}

void KSHelperAppDelegate::validateEditTask(MenuItem& item) {
  if (const auto manager = taskActivityManager()) {
    manager->updateEditRunningOrLatestTaskMenuItem(item);
  }
}

void KSHelperAppDelegate::validateStartTask(MenuItem& item) {
  const bool isRunning = hasRunningTask();
  item.title = localizedString(
      process_, isRunning ? localizable("Switch Timer…") : localizable("Start Timer…"));
  item.keyEquivalent = isRunning ? KeyEquivalent{} : startTaskKeys();
  item.isHidden = false;
  if (showsImages()) item.image = "custom.clock.badge.play";
}

void KSHelperAppDelegate::validateStopTask(MenuItem& item) {
  const bool isRunning = hasRunningTask();
  item.keyEquivalent = isRunning ? startTaskKeys() : KeyEquivalent{};
  item.isHidden = !isRunning;
  if (showsImages()) item.image = "custom.clock.badge.pause";
}

KeyEquivalent KSHelperAppDelegate::startTaskKeys() const {
  const auto shortcut = process_.shared<HelperPreferences>().startTaskShortcut();
  if (!shortcut) return {};
  return {shortcut->keyCodeStringForKeyEquivalent(), shortcut->modifierFlags()};
}

bool KSHelperAppDelegate::showsImages() const {
  return process_.platform().operatingSystemMajorVersion >= firstVersionWithImages;
}

}  // namespace kestro
