// The questions of the first start.
#include "app/KSHelperAppDelegate.h"
#include "platform/Alerts.h"
#include "platform/LocalizedStrings.h"
#include "platform/UserDefaults.h"

namespace kestro {
namespace {

constexpr const char* dontAskToLaunchAtLogin = "dontAskToLaunchAtLogin";
constexpr const char* dontNotifyAboutDisabledAccessibility =
    "dontNotifyAboutDisabledAccessibilityAPI";

}  // namespace

bool KSHelperAppDelegate::isFlagSet(const char* defaultsKey) const {
  return process_.platform().defaults.standard().boolean(defaultsKey).value_or(false);
}

void KSHelperAppDelegate::askToLaunchAtLogin() {
  if (KSStartupManager::shouldStartAtLogin(process_)) return;
  if (!MainAppPreferences::sharedInstance(process_).onboardingHasCompleted()) return;
  if (isFlagSet(dontAskToLaunchAtLogin)) return;
  const Alert alert{
      localizedString(
          process_, "Would you like to have the Kestro tracker app launch automatically at login?"),
      localizedString(process_,
                      "Kestro can only track your activities while the tracker app is running."),
      {localizedString(process_, "Launch at Login"),
       localizedString(process_, "Don't start automatically")},
      true};
  if (isFirstButtonChosen(alert, dontAskToLaunchAtLogin)) {
    KSStartupManager::setShouldStartAtLogin(process_, true);
  }
}

void KSHelperAppDelegate::askForAccessibility() {
  if (KSHelper::accessibilityAvailable(process_)) return;
  if (!MainAppPreferences::sharedInstance(process_).onboardingHasCompleted()) return;
  if (isFlagSet(dontNotifyAboutDisabledAccessibility)) return;
  const Alert alert{
      localizedString(process_,
                      "To track your work, Kestro needs permission to use your Mac’s "
                      "Accessibility features."),
      localizedString(process_,
                      "Would you like to launch System Settings so that you can enable \"Kestro "
                      "Tracker\" in the Accessibility list?"),
      {localizedString(process_, "Open System Settings"),
       localizedString(process_, "Continue Anyway")},
      true};
  if (isFirstButtonChosen(alert, dontNotifyAboutDisabledAccessibility)) {
    KSHelper::openAccessibilityPreferencePane(process_);
  }
}

// A checked box is kept under the key, whatever the button.
bool KSHelperAppDelegate::isFirstButtonChosen(const Alert& alert, const char* suppressionKey) {
  const AlertAnswer answer = process_.platform().alerts.runModal(alert);
  if (answer.suppressionIsChecked) {
    process_.platform().defaults.standard().set(suppressionKey, true);
  }
  return answer.button == 0;
}

}  // namespace kestro
