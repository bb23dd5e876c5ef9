#include "extractors/EnhancedAccessibility.h"

#include "platform/ChildProcesses.h"
#include "platform/Process.h"
#include "platform/UserDefaults.h"
#include "product/KestroLegacy.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr const char* switchKey = "voiceOverOnOffKey";

struct ManualAccessibility {
  explicit ManualAccessibility(Process& process)
      : shouldSet(process.platform()
                      .defaults.standard()
                      .boolean("fakeVoiceOverEnabled_shouldSetManualAccessibility")
                      .value_or(false)) {}
  bool shouldSet;
};

bool isSwitchedOn(const UserDefaults* domain) {
  return domain && domain->boolean(switchKey).value_or(false);
}

// Whether the tool ran; its exit status does not matter.
bool runDefaultsTool(Process& process, const std::string& bundleIdentifier) {
  const auto outcome = process.platform().childProcesses.runAndWait(
      "/usr/bin/defaults", {"write", bundleIdentifier, switchKey, "-bool", "true"});
  return std::holds_alternative<ExitStatus>(outcome);
}

void switchOn(const AccessibilityElement& application) {
  Process& process = application.process();
  Hint::advancedAccessibilityTrackingEnabled().enqueueForNotification(process);
  application.setStringValue("1", attribute::enhancedUserInterface);
  if (process.shared<ManualAccessibility>().shouldSet) {
    application.setNumberValue(true, attribute::manualAccessibility);
  }
}

}  // namespace

void enableEnhancedAccessibility(Process& process, const Activity& activity) {
  if (!activity.accessibilityWindows || activity.accessibilityWindows->empty()) return;
  const AccessibilityElement window(process, activity.accessibilityWindows->front());
  const auto application = window.parent();
  if (!application || !activity.applicationBundleIdentifier()) return;
  enableEnhancedAccessibility(*application, *activity.applicationBundleIdentifier(),
                              DefaultsTool::allowed);
}

void enableEnhancedAccessibility(const AccessibilityElement& application,
                                 const std::string& bundleIdentifier, DefaultsTool defaultsTool) {
  Process& process = application.process();
  if (!process.shared<HelperPreferences>().advancedAccessibilityTrackingEnabled()) return;

  UserDefaultsDatabase& defaults = process.platform().defaults;
  bool toolRan = false;
  if (defaultsTool == DefaultsTool::allowed && !isSwitchedOn(defaults.suite(bundleIdentifier))) {
    toolRan = runDefaultsTool(process, bundleIdentifier);
  }

  UserDefaults* domain = defaults.suite(bundleIdentifier);
  if (domain && !isSwitchedOn(domain)) {
    domain->set(switchKey, true);
    domain->synchronize();
    switchOn(application);
    return;
  }
  if (!toolRan && application.booleanAttribute(attribute::enhancedUserInterface) == true) return;
  switchOn(application);
}

}  // namespace kestro
