#include "app/diagnostics/AccessibilityDumper.h"

#include "app/diagnostics/ElementSearchDump.h"
#include "app/diagnostics/PrintLine.h"
#include "extractors/AccessibilityDescription.h"
#include "extractors/AccessibilityElement.h"
#include "extractors/EnhancedAccessibility.h"
#include "extractors/WebAreas.h"
#include "platform/Accessibility.h"
#include "platform/Clock.h"
#include "probe/KSInfoExtractor.h"

namespace kestro {
namespace {

using OptionalElement = std::optional<AccessibilityElement>;

std::string webAreaLabel(const std::string& label, std::size_t position) {
  return fmt::format("{} web area #{}", label, position);
}

void dumpTree(const AccessibilityElement& element, const std::string& label) {
  Process& process = element.process();
  printLine(process, "\n\n{}:", label);
  printLine(process, "{}", treeDescription(element, maxRecursionLevel(process)).value_or("(nil)"));
}

void dumpWindow(const AccessibilityElement& window, const std::string& label) {
  dumpTree(window, label);
  const auto areas = webAreas(window, nullptr);
  for (std::size_t position = 0; position < areas.size(); ++position)
    dumpTree(areas[position], webAreaLabel(label, position));
}

void searchWindow(const AccessibilityElement& window, const std::string& label,
                  const ElementSearchDump& search) {
  search.printMatches(window, label);
  const auto areas = webAreas(window, nullptr);
  for (std::size_t position = 0; position < areas.size(); ++position)
    search.printMatches(areas[position], webAreaLabel(label, position));
}

// The windows of one application, in the order in which they are shown.
class Windows {
 public:
  // Without an application element there are no windows.
  Windows(Process& process, OptionalElement application,
          const std::optional<std::string>& searchQuery)
      : process_(process), application_(std::move(application)) {
    if (!searchQuery) return;
    printLine(process_, "Using search query: '{}'", *searchQuery);
    search_.emplace(*searchQuery);
  }

  void show() {
    main_ = window(attribute::mainWindow);
    if (main_) show(*main_, "Main Window");
    focused_ = window(attribute::focusedWindow);
    if (focused_ && focused_ != main_) {
      show(*focused_, "Focused Window");
    } else {
      printLine(process_, "\n\nFocused Window: Same as Main Window");
    }
    if (application_) showOthers(application_->elementsAttribute(attribute::windows));
  }

  // The main window, then the focused one when it is another.
  AccessibilityElements mainAndFocused() const {
    AccessibilityElements windows;
    if (main_) windows.push_back(*main_);
    if (focused_ && focused_ != main_) windows.push_back(*focused_);
    return windows;
  }

 private:
  OptionalElement window(std::string_view attribute) const {
    return application_ ? application_->elementAttribute(attribute) : std::nullopt;
  }

  void showOthers(const AccessibilityElements& windows) const {
    for (std::size_t position = 0; position < windows.size(); ++position) {
      if (windows[position] == main_ || windows[position] == focused_) continue;
      show(windows[position], fmt::format("Window {}", position));
    }
  }

  void show(const AccessibilityElement& window, const std::string& label) const {
    if (search_) return searchWindow(window, label, *search_);
    dumpWindow(window, label);
  }

  Process& process_;
  OptionalElement application_;
  std::optional<ElementSearchDump> search_;
  OptionalElement main_;
  OptionalElement focused_;
};

// The first text of that attribute among the windows.
std::optional<std::string> firstText(const AccessibilityElements& windows,
                                     std::string_view attribute) {
  for (const AccessibilityElement& window : windows) {
    if (auto text = window.stringAttribute(attribute)) return text;
  }
  return std::nullopt;
}

bool readsDocumentPath(Process& process, const RunningApplication& application) {
  const auto& withoutPath =
      process.shared<KSInfoExtractor>().noPathExtractionApplicationBundleIdentifiers();
  return application.bundleIdentifier && !withoutPath.contains(*application.bundleIdentifier);
}

Activity activityOf(Process& process, const RunningApplication& application,
                    const AccessibilityElements& windows) {
  Activity activity(application, ActivityDetails{});
  activity.accessibilityWindows.emplace();
  for (const AccessibilityElement& window : windows)
    activity.accessibilityWindows->push_back(window.handle());
  activity.details.windowTitle = firstText(windows, attribute::title);
  if (readsDocumentPath(process, application)) {
    activity.details.documentPath = firstText(windows, attribute::document);
  }
  return activity;
}

void printExtractorName(Process& process, const Activity& activity) {
  const auto* extractor =
      process.shared<KSInfoExtractor>().registeredApplicationInfoExtractorForBundleIdentifier(
          activity.applicationBundleIdentifier());
  if (extractor) return printLine(process, "Using info extractor: {}", extractor->name);
  printLine(process,
            "No dedicated info extractor registered; falling back to CatalystInfoExtractor.");
}

void printExtractorResult(Process& process, const RunningApplication& application,
                          const AccessibilityElements& windows) {
  Activity activity = activityOf(process, application, windows);
  printLine(process, "\n\n=== Info Extractor Result ===");
  printExtractorName(process, activity);

  using Milliseconds = std::chrono::duration<double, std::milli>;
  const Clock& clock = process.platform().clock;
  const Seconds start = clock.monotonicTime();
  process.shared<KSInfoExtractor>().callInfoExtractorForActivity(activity);
  const Milliseconds elapsed = clock.monotonicTime() - start;
  printLine(process, "Extractor took {:.1f} ms", elapsed.count());
  printLine(process, "{}", activity.details.description());
}

OptionalElement elementOf(Process& process, const RunningApplication& application) {
  const auto handle =
      process.platform().accessibility.applicationElement(application.processIdentifier);
  if (!handle) return std::nullopt;
  return AccessibilityElement(process, *handle);
}

}  // namespace

void AccessibilityDumper::dumpWindowsForApplicationWithBundleIdentifier(
    Process& process, const std::string& bundleIdentifier,
    const std::optional<std::string>& searchQuery) {
  const auto running = process.platform().workspace.runningApplications(bundleIdentifier);
  if (running.empty()) return printLine(process, "Application '{}' not found.", bundleIdentifier);
  const RunningApplication& application = running.front();
  const auto element = elementOf(process, application);
  if (element) enableEnhancedAccessibility(*element, bundleIdentifier, DefaultsTool::allowed);
  Windows windows(process, element, searchQuery);
  windows.show();
  printExtractorResult(process, application, windows.mainAndFocused());
}

}  // namespace kestro
