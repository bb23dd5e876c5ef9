#include "probe/KSInfoExtractor.h"

#include <algorithm>

#include "foundation/Date.h"
#include "platform/Accessibility.h"
#include "platform/UserDefaults.h"
#include "platform/WindowServer.h"
#include "platform/Workspace.h"
#include "probe/WindowTitleCleanup.h"
#include "product/KestroLegacy.h"

namespace kestro {
namespace {

bool isChromiumWebApplicationOfBrave(const Activity& activity) {
  const auto& bundleIdentifier = activity.applicationBundleIdentifier();
  return bundleIdentifier && bundleIdentifier->starts_with("com.brave.Browser.app.");
}

bool isIn(const std::set<std::string>& list, const std::optional<std::string>& text) {
  return text && list.contains(*text);
}

bool isEmpty(const std::optional<std::string>& text) {
  return !text || text->empty();
}

bool isKept(const WindowEntry& entry, const Activity& activity) {
  if (entry.ownerProcessIdentifier != activity.applicationProcessIdentifier()) return false;
  if (entry.sharingState == 0) return false;
  return !entry.name || !entry.name->starts_with("Activity window for");
}

}  // namespace

KSInfoExtractor::KSInfoExtractor(Process& process) : process_(process), lists_(process) {
  registerExtractors();
}

std::optional<Activity> KSInfoExtractor::currentActivity() {
  if (preference("KSInfoExtractor_skipAllTracking")) return std::nullopt;
  const auto application = process_.platform().workspace.frontmostApplication();
  if (!application) return std::nullopt;

  Activity activity(*application, ActivityDetails{});
  if (isAlwaysIgnored(activity)) {
    ++statistics_.alwaysIgnoredApplications;
    statistics_.lastAlwaysIgnored = activity.applicationBundleIdentifier();
    return std::nullopt;
  }
  if (!readsNoWindows(activity)) {
    const ScreenSizes screens = screenSizes();
    if (passesAccessibilityGate(activity)) readAccessibility(activity, screens);
    requestScreenCaptureAccess();
    if (!activity.details.windowTitle && !preference("KSInfoExtractor_skipWindowTitleExtraction")) {
      readWindowList(activity, screens);
    }
  }
  if (!preference("KSInfoExtractor_skipTrackingPostprocessing")) {
    process_.shared<WindowTitleCleanup>().apply(activity);
  }
  return activity;
}

bool KSInfoExtractor::preference(std::string_view key) const {
  return process_.platform().defaults.standard().boolean(key).value_or(false);
}

bool KSInfoExtractor::isAlwaysIgnored(const Activity& activity) {
  // Both lists are built by the first call that gets here, whichever decides.
  const auto& identifiers = lists_.alwaysIgnoredApplicationBundleIdentifiers();
  const auto& names = lists_.alwaysIgnoredApplicationExecutableNames();
  return isIn(identifiers, activity.applicationBundleIdentifier()) ||
         isIn(names, activity.applicationExecutableName());
}

bool KSInfoExtractor::readsNoWindows(const Activity& activity) {
  const auto& withoutTitle = lists_.noWindowTitleApplicationBundleIdentifiers();
  return preference("KSInfoExtractor_skipAccessibilityTracking") ||
         isIn(withoutTitle, activity.applicationBundleIdentifier());
}

KSInfoExtractor::ScreenSizes KSInfoExtractor::screenSizes() const {
  ScreenSizes sizes;
  for (const Rect& frame : process_.platform().workspace.screens())
    sizes.push_back(frame.size);
  return sizes;
}

void KSInfoExtractor::requestScreenCaptureAccess() {
  if (!preference("KSInfoExtractor_shouldRequestScreenCaptureAccess")) return;
  WindowServer& windowServer = process_.platform().windowServer;
  if (!windowServer.hasScreenCaptureAccess()) windowServer.requestScreenCaptureAccess();
}

void KSInfoExtractor::readWindowList(Activity& activity, const ScreenSizes& screens) {
  auto entries = process_.platform().windowServer.onScreenWindows();
  std::erase_if(entries, [&](const WindowEntry& entry) { return !isKept(entry, activity); });

  auto& title = activity.details.windowTitle;
  if (!preference("KSInfoExtractor_doNotPreferTitleOfRegularWindow")) {
    const auto regular = std::ranges::find_if(
        entries, [](const WindowEntry& entry) { return entry.layer == 0 && !isEmpty(entry.name); });
    if (regular != entries.end()) title = regular->name;
  }
  for (const WindowEntry& entry : entries) {
    if (isEmpty(title) && !isEmpty(entry.name)) title = entry.name;
    if (entry.bounds && std::ranges::find(screens, entry.bounds->size) != screens.end()) {
      activity.isFullscreen = true;
    }
  }
}

bool KSInfoExtractor::passesAccessibilityGate(const Activity& activity) {
  if (!KSHelper::accessibilityAvailable(process_)) return false;
  // What costs too much to be read every second has its title from the window list in between.
  if (process_.platform().accessibility.isResting(activity.applicationProcessIdentifier())) {
    return false;
  }
  if (isIn(lists_.noAccessibilityApplicationBundleIdentifiers(),
           activity.applicationBundleIdentifier())) {
    return false;
  }
  if (isChromiumWebApplicationOfBrave(activity)) return false;
  const auto executable = activity.applicationExecutableURL();
  return !executable || executable->find("Gephi") == std::string::npos;
}

const std::set<std::string>& KSInfoExtractor::noAccessibilityApplicationBundleIdentifiers() {
  return lists_.noAccessibilityApplicationBundleIdentifiers();
}

const std::set<std::string>& KSInfoExtractor::noPathExtractionApplicationBundleIdentifiers() {
  return lists_.noPathExtractionApplicationBundleIdentifiers();
}

}  // namespace kestro
