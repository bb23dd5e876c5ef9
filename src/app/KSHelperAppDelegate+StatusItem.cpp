// The status item's look, and the global shortcut for the timer.
#include "app/KSHelperAppDelegate.h"
#include "platform/Clock.h"
#include "platform/ControlService.h"
#include "platform/UserDefaults.h"

namespace kestro {
namespace {

constexpr Seconds quietTimeAfterAppearanceChange{10};

}  // namespace

void KSHelperAppDelegate::updateStatusItemProperties() {
  if (!statusItem_) return;
  StatusItemInfoProvider::sharedInstance(process_).updateStatusItem(
      *statusItem_, statusMenu_.itemWithIdentifier("productivityScore"),
      statusMenu_.itemWithIdentifier("taskStatus"));
  updateStatusItemVisibility();
  process_.platform().controlService.statusMayHaveChanged();
}

void KSHelperAppDelegate::updateStatusItemTransparency() {
  updateStatusItemProperties();
}

void KSHelperAppDelegate::updateStatusItemVisibility() {
  if (!statusItem_) return;
  const bool isVisible = process_.shared<HelperPreferences>().statusItemVisible();
  if (isVisible == statusItem_->properties().isVisible) return;
  StatusItemProperties properties = statusItem_->properties();
  properties.isVisible = isVisible;
  statusItem_->setProperties(std::move(properties));
}

void KSHelperAppDelegate::updateSyncStatusItemWithTitle(const std::optional<std::string>& title) {
  MenuItem* row = statusMenu_.itemWithIdentifier("syncStatus");
  if (!row) return;
  const bool isShown = shouldShowSyncStatusItem();
  row->isHidden = !isShown || !title;
  row->title = isShown ? title.value_or("") : "";
}

bool KSHelperAppDelegate::shouldShowSyncStatusItem() const {
  return isFlagSet("KSHelperAppDelegate_shouldShowSyncStatusItem");
}

// Desktops change colours in bursts; one update in ten seconds is enough.
void KSHelperAppDelegate::effectiveAppearanceChanged() {
  const Date now = process_.platform().clock.now();
  const auto& last = lastEffectiveAppearanceChangeDispatched_;
  if (last && now - *last <= quietTimeAfterAppearanceChange) return;
  StatusItemInfoProvider::sharedInstance(process_).dispatchStatusUpdateRequest(false);
  lastEffectiveAppearanceChangeDispatched_ = now;
}

// The user's one shortcut starts or stops the timer; with Shift it edits the running or latest one.
void KSHelperAppDelegate::updateStartTaskShortcut() {
  auto& sharedBinder = MASShortcutBinder::sharedBinder(process_);
  sharedBinder.setBindingOptions(fakeShortcutTransformer);
  if (!editTaskShortcutBinder_) {
    editTaskShortcutBinder_ = std::make_unique<MASShortcutBinder>(process_);
    editTaskShortcutBinder_->setBindingOptions(fakeShortcutWithExtraShiftTransformer);
  }
  const std::string key = HelperPreferences::startTaskShortcutKey;
  sharedBinder.bindShortcutWithDefaultsKey(key, [this] { startOrStopTask(); });
  editTaskShortcutBinder_->bindShortcutWithDefaultsKey(key, [this] { editRunningOrLatestTask(); });
}

}  // namespace kestro
