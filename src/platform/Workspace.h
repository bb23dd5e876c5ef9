// Running applications and screens. Main thread only; none of these calls asks another application.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/Geometry.h"
#include "platform/Accessibility.h"

namespace kestro {

// One running application, as it was when asked for. Absent fields are unknown to the platform.
struct RunningApplication {
  ProcessIdentifier processIdentifier = 0;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> localizedName;
  std::optional<std::string> executablePath;  // the whole path of the executable file
  std::optional<std::string> bundlePath;
};

// An application on disk. Absent fields: its bundle does not say.
struct ApplicationBundle {
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> localizedName;
};

class Workspace {
 public:
  virtual ~Workspace() = default;

  virtual std::optional<RunningApplication> frontmostApplication() = 0;
  virtual std::optional<RunningApplication> runningApplication(ProcessIdentifier process) = 0;
  // All running applications with exactly this bundle identifier, in the platform's order.
  virtual std::vector<RunningApplication> runningApplications(
      std::string_view bundleIdentifier) = 0;

  // The whole path of the executable of any process of this user; absent when there is none.
  virtual std::optional<std::string> executablePath(ProcessIdentifier process) = 0;
  // Absent when there is no bundle.
  virtual std::optional<ApplicationBundle> bundleAtPath(const std::string& path) = 0;
  // Where the bundle of an application lies, running or not. Absent when the platform knows none
  // with exactly this bundle identifier.
  virtual std::optional<std::string> applicationPath(std::string_view bundleIdentifier) = 0;

  // Starts the application there, or brings it to the front. Nobody hears whether it works.
  virtual void openApplication(const std::string& bundlePath) = 0;
  // Opens the desktop's settings where accessibility is permitted. False: it has none.
  virtual bool openAccessibilitySettings() = 0;

  // Frames of all attached screens, the main screen first, in screen coordinates (origin at the
  // bottom left of the main screen, y upwards).
  virtual std::vector<Rect> screens() = 0;
};

}  // namespace kestro
