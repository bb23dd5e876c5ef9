#include "extractors/GeneralAccessibilityInfoExtractor.h"

#include <algorithm>

#include "extractors/WebAreaURLInfoExtractor.h"
#include "foundation/ComparableText.h"
#include "platform/UserDefaults.h"
#include "product/KestroDatabase.h"

namespace kestro {
namespace {

bool trueUnlessSet(Process& process, std::string_view key) {
  return process.platform().defaults.standard().boolean(key).value_or(true);
}

std::vector<std::string> makeChromeAppShimPrefixes(Process& process) {
  std::vector<std::string> prefixes;
  for (const std::string& browser : ApplicationList::chromeBasedBrowserBundleIDs(process)) {
    if (browser.find("brave") == std::string::npos) prefixes.push_back(browser + ".app.");
  }
  return prefixes;
}

bool areAllModal(const AccessibilityElements& windows) {
  return std::ranges::all_of(windows, [](const AccessibilityElement& window) {
    return window.booleanAttribute(attribute::modal) == true;
  });
}

AccessibilityElements nonModal(const AccessibilityElements& windows) {
  AccessibilityElements others;
  for (const AccessibilityElement& window : windows) {
    if (window.booleanAttribute(attribute::modal) != true) others.push_back(window);
  }
  return others;
}

std::vector<std::string> documentPaths(const AccessibilityElements& windows) {
  std::vector<std::string> paths;
  for (const AccessibilityElement& window : windows) {
    if (auto path = window.stringAttribute(attribute::document)) paths.push_back(std::move(*path));
  }
  return paths;
}

bool hasSavePanel(const AccessibilityElement& window) {
  for (const AccessibilityElement& sheet : window.children()) {
    if (sheet.role() != role::sheet) continue;
    const auto children = sheet.children();
    const bool found = std::ranges::any_of(children, [](const AccessibilityElement& child) {
      return child.stringAttribute(attribute::identifier) == "nameFieldLabel";
    });
    if (found) return true;
  }
  return false;
}

// A browser's application window shows its page in the window's first group.
void readChromeAppShimWindows(Activity& activity, const AccessibilityElements& windows) {
  ActivityDetails& details = activity.details;
  for (const AccessibilityElement& window : windows) {
    const auto group = firstWithRole(role::group, window.children());
    if (!group) continue;
    if (auto address = group->urlString()) details.documentPath = std::move(address);
    if (details.windowTitle) continue;
    const auto title = group->title();
    const auto description = group->stringAttribute(attribute::description);
    if (!title || title->empty() || !description || !isSameText(*title, *description)) continue;
    details.windowTitle = title;
    return;
  }
}

bool isSafariWebApplication(std::string_view bundleIdentifier) {
  return bundleIdentifier.starts_with("com.apple.Safari.WebApp.") ||
         bundleIdentifier.starts_with("com.apple.SafariTechnologyPreview.WebApp.");
}

}  // namespace

GeneralAccessibilityInfoExtractor::GeneralAccessibilityInfoExtractor(Process& process)
    : process_(process),
      preferTitleOfOnlyNonModalWindow_(trueUnlessSet(
          process, "GeneralAccessibilityInfoExtractor_preferTitleOfOnlyNonModalWindow")),
      fallBackToDocumentPathOfOnlyNonModalWindow_(trueUnlessSet(
          process, "GeneralAccessibilityInfoExtractor_fallBackToDocumentPathOfOnlyNonModalWindow")),
      fallBackToOnlyDocumentPathAmongAllWindows_(trueUnlessSet(
          process, "GeneralAccessibilityInfoExtractor_fallBackToOnlyDocumentPathAmongAllWindows")),
      chromeAppShimPrefixes_(makeChromeAppShimPrefixes(process)) {}

void GeneralAccessibilityInfoExtractor::extractAdditionalInformationFor(Activity& activity) {
  fallBackForDialogs(activity);
  detectSavePanel(activity);
  readBrowserApplicationWindows(activity);
}

void GeneralAccessibilityInfoExtractor::fallBackForDialogs(Activity& activity) const {
  ActivityDetails& details = activity.details;
  if (details.documentPath || details.contextPath) return;
  const auto windows = accessibilityWindows(process_, activity);
  const auto application = windows.empty() ? std::nullopt : windows.front().parent();
  if (!application) return;
  const auto allWindows = application->elementsAttribute(attribute::windows);
  if (allWindows.empty()) return;

  if (areAllModal(windows)) {
    if (const auto window = only(nonModal(allWindows))) {
      if (preferTitleOfOnlyNonModalWindow_) {
        const auto title = window->title();
        if (title && !title->empty()) details.windowTitle = title;
      }
      if (fallBackToDocumentPathOfOnlyNonModalWindow_) {
        details.documentPath = window->stringAttribute(attribute::document);
        if (details.documentPath) return;
      }
    }
  }
  if (fallBackToOnlyDocumentPathAmongAllWindows_) {
    details.documentPath = only(documentPaths(allWindows));
  }
}

void GeneralAccessibilityInfoExtractor::detectSavePanel(Activity& activity) const {
  const auto windows = accessibilityWindows(process_, activity);
  if (std::ranges::any_of(windows, hasSavePanel)) activity.isShowingSavePanel = true;
}

void GeneralAccessibilityInfoExtractor::readBrowserApplicationWindows(Activity& activity) const {
  if (!activity.applicationBundleIdentifier()) return;
  const std::string& bundleIdentifier = *activity.applicationBundleIdentifier();
  const bool isChromeAppShim = std::ranges::any_of(
      chromeAppShimPrefixes_,
      [&](const std::string& prefix) { return bundleIdentifier.starts_with(prefix); });
  if (isChromeAppShim) {
    readChromeAppShimWindows(activity, accessibilityWindows(process_, activity));
  }
  if (isSafariWebApplication(bundleIdentifier)) {
    WebAreaURLInfoExtractor::readWebAddress(process_, activity);
  }
}

}  // namespace kestro
