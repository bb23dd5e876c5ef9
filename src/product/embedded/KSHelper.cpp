#include "platform/Accessibility.h"
#include "platform/Alerts.h"
#include "platform/LocalizedStrings.h"
#include "platform/LoginItems.h"
#include "platform/Process.h"
#include "platform/Workspace.h"
#include "product/KestroLegacy.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {

bool KSHelper::accessibilityAvailable(Process& process) {
  recordOperation(process, "KSHelper accessibilityAvailable");
  return process.platform().accessibility.isTrusted();
}

// Where the system has none, the user is told what to do instead.
void KSHelper::openAccessibilityPreferencePane(Process& process) {
  recordOperation(process, "KSHelper openAccessibilityPreferencePane");
  if (process.platform().workspace.openAccessibilitySettings()) return;
  process.platform().alerts.present(
      {localizedString(process, "This desktop has no settings for accessibility."),
       localizedString(process,
                       "Install the package at-spi2-core and log in again; Kestro then switches "
                       "accessibility on by itself."),
       {localizedString(process, "OK")}},
      nullptr);
}

std::string KSHelper::mainAppBundleIdentifierForLaunching() {
  return KESTRO_MAIN_BUNDLE_IDENTIFIER;
}

bool KSStartupManager::shouldStartAtLogin(Process& process) {
  recordOperation(process, "KSStartupManager shouldStartAtLogin");
  return process.platform().loginItems.startsAtLogin();
}

void KSStartupManager::setShouldStartAtLogin(Process& process, bool starts) {
  recordOperation(process, "KSStartupManager setShouldStartAtLogin", {starts});
  process.platform().loginItems.setStartsAtLogin(starts);
}

std::optional<std::string> KSHelper::getPathForProcess(Process& process, ProcessIdentifier pid) {
  return process.platform().workspace.executablePath(pid);
}

}  // namespace kestro
