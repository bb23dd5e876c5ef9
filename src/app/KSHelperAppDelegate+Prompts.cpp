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

void KSHelperAppDelegate::askToLaunchAtLogin(const RunLoop::Task& then) {
  if (KSStartupManager::shouldStartAtLogin(process_)) return then();
  if (!MainAppPreferences::sharedInstance(process_).onboardingHasCompleted()) return then();
  if (isFlagSet(dontAskToLaunchAtLogin)) return then();
  const Alert alert{
      localizedString(
          process_, "Would you like to have the Kestro tracker app launch automatically at login?"),
      localizedString(process_,
                      "Kestro can only track your activities while the tracker app is running."),
      {localizedString(process_, "Launch at Login"),
       localizedString(process_, "Don't start automatically")},
      true};
  ask(alert, dontAskToLaunchAtLogin, [this, then](bool isFirstButton) {
    if (isFirstButton) KSStartupManager::setShouldStartAtLogin(process_, true);
    then();
  });
}

void KSHelperAppDelegate::askForAccessibility(const RunLoop::Task& then) {
  if (KSHelper::accessibilityAvailable(process_)) return then();
  if (!MainAppPreferences::sharedInstance(process_).onboardingHasCompleted()) return then();
  if (isFlagSet(dontNotifyAboutDisabledAccessibility)) return then();
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
  ask(alert, dontNotifyAboutDisabledAccessibility, [this, then](bool isFirstButton) {
    if (isFirstButton) KSHelper::openAccessibilityPreferencePane(process_);
    then();
  });
}

// A checked box is kept under the key, whatever the button.
void KSHelperAppDelegate::ask(const Alert& alert, const char* suppressionKey,
                              const std::function<void(bool isFirstButton)>& then) {
  process_.platform().alerts.present(
      alert, [this, suppressionKey, then](const AlertAnswer& answer) {
        if (answer.suppressionIsChecked) {
          process_.platform().defaults.standard().set(suppressionKey, true);
        }
        then(answer.button == 0);
      });
}

}  // namespace kestro
