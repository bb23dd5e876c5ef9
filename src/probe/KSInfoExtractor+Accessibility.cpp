// The accessibility half of the probe: from the application's element to its windows' fields.
#include <algorithm>
#include <unordered_set>

#include "accessibility/UIElementUtilities.h"
#include "extractors/AccessibilityNames.h"
#include "extractors/GeneralAccessibilityInfoExtractor.h"
#include "platform/Accessibility.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "probe/KSInfoExtractor.h"

namespace kestro {
namespace {

constexpr double defaultMessagingTimeout = 2;  // seconds

}  // namespace

void KSInfoExtractor::readAccessibility(Activity& activity, const ScreenSizes& screens) {
  statistics_.enteredBranch = true;
  setMessagingTimeoutOnce();
  Accessibility& accessibility = process_.platform().accessibility;
  const auto application =
      accessibility.applicationElement(activity.applicationProcessIdentifier());
  if (!application) return;
  statistics_.fetchedApplication = true;

  const auto candidates = candidateWindows(*application);
  const auto windows = acceptedWindows(candidates);
  countWindowFetch(activity, *application, !candidates.empty());
  activity.accessibilityWindows = windows;
  for (const UIElement& window : windows)
    readWindow(activity, window, screens);
  process_.shared<GeneralAccessibilityInfoExtractor>().extractAdditionalInformationFor(activity);
}

void KSInfoExtractor::setMessagingTimeoutOnce() {
  if (messagingTimeoutWasSet_) return;
  messagingTimeoutWasSet_ = true;
  Accessibility& accessibility = process_.platform().accessibility;
  const auto systemWide = accessibility.systemWideElement();
  if (!systemWide) return;
  const double seconds = process_.platform()
                             .defaults.standard()
                             .number("KSInfoExtractor_globalAccessibilityTimeout")
                             .value_or(defaultMessagingTimeout);
  accessibility.setMessagingTimeout(*systemWide, static_cast<float>(seconds));
}

std::vector<UIElement> KSInfoExtractor::candidateWindows(const UIElement& application) const {
  std::vector<UIElement> candidates;
  for (const std::string_view name : {attribute::mainWindow, attribute::focusedWindow}) {
    const auto value = process_.shared<UIElementUtilities>().valueOfAttribute(name, application);
    const auto* window = value ? value->get<UIElement>() : nullptr;
    if (window) candidates.push_back(*window);
  }
  return candidates;
}

std::vector<UIElement> KSInfoExtractor::acceptedWindows(
    const std::vector<UIElement>& candidates) const {
  std::vector<UIElement> accepted;
  std::set<std::string> seenIdentifiers;
  for (const UIElement& candidate : candidates) {
    const auto window = windowOfSheet(candidate);
    if (!window) continue;
    const auto identifier = process_.shared<UIElementUtilities>().stringValueOfAttribute(
        attribute::identifier, *window);
    // An empty identifier is an identifier.
    const bool isNew = identifier ? seenIdentifiers.insert(*identifier).second
                                  : std::ranges::find(accepted, *window) == accepted.end();
    if (isNew) accepted.push_back(*window);
  }
  return accepted;
}

// A sheet counts as the window it belongs to.
std::optional<UIElement> KSInfoExtractor::windowOfSheet(UIElement element) const {
  const auto& utilities = process_.shared<UIElementUtilities>();
  // Sheets on sheets end at a window; those of a broken application may lead back.
  std::unordered_set<UIElement> sheets;
  while (sheets.insert(element).second) {
    if (utilities.roleOfUIElement(element) != role::sheet) return element;
    const auto parent = utilities.parentOfUIElement(element);
    if (!parent) return std::nullopt;
    element = *parent;
  }
  return std::nullopt;
}

void KSInfoExtractor::countWindowFetch(const Activity& activity, const UIElement& application,
                                       bool foundWindow) {
  const auto& bundleIdentifier = activity.applicationBundleIdentifier();
  Platform& platform = process_.platform();
  if (!foundWindow) {
    statistics_.lastWithoutWindow = bundleIdentifier;
    ++statistics_.windowFetchFailures;
    const auto error =
        platform.accessibility.copyAttributeValue(application, attribute::mainWindow).error;
    if (error != AccessibilityError::success) {
      statistics_.windowFetchError = static_cast<std::int64_t>(error);
    }
    return;
  }
  // The product's own windows say nothing about other applications.
  if (bundleIdentifier && bundleIdentifier->find("Kestro") != std::string::npos) return;
  statistics_.fetchedWindow = true;
  statistics_.lastWindowFetch = platform.clock.now();
  statistics_.windowFetchFailures = 0;
}

void KSInfoExtractor::readWindow(Activity& activity, const UIElement& window,
                                 const ScreenSizes& screens) {
  const auto& utilities = process_.shared<UIElementUtilities>();
  ActivityDetails& details = activity.details;
  const auto& bundleIdentifier = activity.applicationBundleIdentifier();

  if (!activity.isFullscreen) {
    activity.isFullscreen =
        utilities.booleanValueOfAttribute(attribute::fullScreen, window).value_or(false);
  }
  // Finder's desktop is a window of the size of the screen.
  if (!activity.isFullscreen && bundleIdentifier != "com.apple.finder") {
    const Size size = utilities.sizeOfUIElement(window);
    activity.isFullscreen = std::ranges::find(screens, size) != screens.end();
  }
  if (!details.windowTitle) {
    details.windowTitle = utilities.stringValueOfAttribute(attribute::title, window);
    if (details.windowTitle) statistics_.usedAccessibility = true;
  }
  const auto& withoutPath = lists_.noPathExtractionApplicationBundleIdentifiers();
  const bool readsPath = !bundleIdentifier || !withoutPath.contains(*bundleIdentifier);
  if (!details.documentPath && readsPath) {
    details.documentPath = utilities.stringValueOfAttribute(attribute::document, window);
    if (details.documentPath) statistics_.usedAccessibility = true;
  }
}

}  // namespace kestro
