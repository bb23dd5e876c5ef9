// The activity probe: decides which application is in front and whether it is to be tracked, and
// reads what the platform reveals about its front window. Also the registry of per-application
// extractors. One per process life, made before anything else of it; main thread only.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "extractors/KSApplicationInfoExtractor.h"
#include "foundation/Geometry.h"
#include "probe/AccessibilityStatistics.h"
#include "probe/ApplicationLists.h"
#include "product/Activity.h"

namespace kestro {

class KSInfoExtractor {
 public:
  // Registers every extractor, with the extra identifiers that the preferences name now.
  explicit KSInfoExtractor(Process& process);

  // Adds or replaces the entry. Does nothing without a class or with an empty identifier.
  void addApplicationInfoExtractor(const ExtractorClass* extractorClass,
                                   std::string_view bundleIdentifier);
  // Null when the identifier is absent or has no entry.
  const ExtractorClass* registeredApplicationInfoExtractorForBundleIdentifier(
      const std::optional<std::string>& bundleIdentifier) const;
  // Runs the extractor of the activity's application, or the one for all others; none for an
  // application without a bundle identifier.
  void callInfoExtractorForActivity(Activity& activity);

  // What the user is doing now; absent when nothing is to be tracked.
  //
  // For an ordinary application with one window, main and focused, costs 11 requests: two for the
  // windows, role and identifier of each, and the window's full-screen state, size, title and
  // document, and what GeneralAccessibilityInfoExtractor needs. The window list is read only when
  // that gave no title. An application that does not answer costs what is left of
  // the sample's budget of time, once.
  std::optional<Activity> currentActivity();

  const std::set<std::string>& noAccessibilityApplicationBundleIdentifiers();
  const std::set<std::string>& noPathExtractionApplicationBundleIdentifiers();
  const InfoLoggerAccessibilityStatsProvider& accessibilityStatistics() const {
    return statistics_;
  }

 private:
  using ScreenSizes = std::vector<Size>;

  void registerExtractors();

  bool preference(std::string_view key) const;
  bool isAlwaysIgnored(const Activity& activity);
  bool readsNoWindows(const Activity& activity);
  ScreenSizes screenSizes() const;
  bool passesAccessibilityGate(const Activity& activity);

  void readAccessibility(Activity& activity, const ScreenSizes& screens);
  void setMessagingTimeoutOnce();
  std::vector<UIElement> candidateWindows(const UIElement& application) const;
  std::vector<UIElement> acceptedWindows(const std::vector<UIElement>& candidates) const;
  std::optional<UIElement> windowOfSheet(UIElement element) const;
  void countWindowFetch(const Activity& activity, const UIElement& application, bool foundWindow);
  void readWindow(Activity& activity, const UIElement& window, const ScreenSizes& screens);

  void requestScreenCaptureAccess();
  void readWindowList(Activity& activity, const ScreenSizes& screens);

  Process& process_;
  ApplicationLists lists_;
  AccessibilityStatistics statistics_;
  std::map<std::string, const ExtractorClass*, std::less<>> registry_;
  bool messagingTimeoutWasSet_ = false;
};

}  // namespace kestro
