// The activity record: what the user is doing, as sampled once and exchanged with the tracking
// loop.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/AttributeValue.h"
#include "platform/Workspace.h"

namespace kestro {

struct ActivityDetails {
  std::optional<std::string> windowTitle;
  std::optional<std::string> documentTitle;  // the document or item shown, such as a subject
  // The document as its application names it: normally a file URL, for a page its web address.
  std::optional<std::string> documentPath;
  // What is shown, most general first: a chat server, then its channel.
  std::optional<std::vector<std::string>> contextPath;
  bool isPrivateBrowsing = false;

  // A line for each field, for diagnostics; "(nil)" for what is absent.
  std::string description() const;
  bool operator==(const ActivityDetails&) const = default;
};

// One per sample. Made by the probe, completed by one extractor, consumed by the tracking loop.
class Activity {
 public:
  Activity(RunningApplication runningApplication, ActivityDetails emptyDetails)
      : details(std::move(emptyDetails)), application_(std::move(runningApplication)) {}

  const RunningApplication& application() const { return application_; }
  const std::optional<std::string>& applicationBundleIdentifier() const {
    return application_.bundleIdentifier;
  }
  ProcessIdentifier applicationProcessIdentifier() const { return application_.processIdentifier; }
  // The executable as a file URL in its absolute form; absent when the platform knows no path.
  std::optional<std::string> applicationExecutableURL() const;
  // The last component of the executable's path.
  std::optional<std::string> applicationExecutableName() const;

  ActivityDetails details;
  bool isFullscreen = false;
  bool isShowingSavePanel = false;
  // The main and the focused window; absent when the application gave no accessibility element.
  std::optional<std::vector<UIElement>> accessibilityWindows;

 private:
  RunningApplication application_;
};

}  // namespace kestro
