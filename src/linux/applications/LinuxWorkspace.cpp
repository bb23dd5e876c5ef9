#include "linux/applications/LinuxWorkspace.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>

#include "linux/applications/LaunchCommand.h"
#include "linux/process/ProcessInformation.h"
#include "linux/windows/ScreenCoordinates.h"

namespace kestro {
namespace {

// Of GNOME, KDE, Xfce, MATE and Cinnamon.
constexpr std::array<std::string_view, 5> accessibilitySettings{
    "gnome-universal-access-panel", "kcm_access", "xfce4-accessibility-settings",
    "mate-at-properties", "cinnamon-settings-universal-access"};

bool exists(ProcessIdentifier process) {
  return process > 0 && (kill(process, 0) == 0 || errno == EPERM);
}

// An ordinary window tells best which application it is: the frontmost of these, else any.
std::map<ProcessIdentifier, const X11Window*> windowsByProcess(const X11Snapshot& snapshot) {
  std::map<ProcessIdentifier, const X11Window*> windows;
  for (const X11Window& window : snapshot.windows) {
    if (!window.process) continue;
    const X11Window*& known = windows[*window.process];
    const bool isBetter =
        known && known->type != X11WindowType::ordinary && window.type == X11WindowType::ordinary;
    if (!known || isBetter) known = &window;
  }
  return windows;
}

}  // namespace

std::optional<RunningApplication> LinuxWorkspace::frontmostApplication() {
  generation_.advance();
  const X11Window* active = desktop_.snapshot().active();
  if (!active || !active->process) return std::nullopt;
  return identity_.application(*active->process, active);
}

std::optional<RunningApplication> LinuxWorkspace::runningApplication(ProcessIdentifier process) {
  if (!exists(process)) return std::nullopt;
  const auto windows = windowsByProcess(desktop_.snapshot());
  const auto found = windows.find(process);
  return identity_.application(process, found == windows.end() ? nullptr : found->second);
}

std::vector<RunningApplication> LinuxWorkspace::runningApplications(
    std::string_view bundleIdentifier) {
  std::vector<RunningApplication> applications;
  for (const auto& [process, window] : windowsByProcess(desktop_.snapshot())) {
    auto application = identity_.application(process, window);
    if (application.bundleIdentifier == bundleIdentifier) {
      applications.push_back(std::move(application));
    }
  }
  // The helper itself has no window.
  if (applications.empty() && bundleIdentifier == KESTRO_BUNDLE_IDENTIFIER) {
    applications.push_back({getpid(), std::string(bundleIdentifier), std::nullopt,
                            kestro::executablePath(getpid()), std::nullopt});
  }
  return applications;
}

std::optional<std::string> LinuxWorkspace::executablePath(ProcessIdentifier process) {
  return kestro::executablePath(process);
}

std::optional<std::string> LinuxWorkspace::applicationPath(std::string_view bundleIdentifier) {
  const auto found = std::ranges::find(entries_.all(), bundleIdentifier, &DesktopEntry::identifier);
  return found == entries_.all().end() ? std::nullopt : std::optional(found->path.string());
}

void LinuxWorkspace::openApplication(const std::string& desktopFile) {
  const auto found = std::ranges::find_if(entries_.all(), [&](const DesktopEntry& entry) {
    return entry.path.string() == desktopFile;
  });
  if (found == entries_.all().end()) return;
  std::vector<std::string> command = launchCommand(found->exec);
  const auto program = command.empty() ? std::nullopt : programInPath(command.front());
  if (!program) return;
  command.erase(command.begin());
  childProcesses_.startDetached(*program, command);
}

bool LinuxWorkspace::openAccessibilitySettings() {
  for (const std::string_view identifier : accessibilitySettings) {
    const auto path = applicationPath(identifier);
    if (!path) continue;
    openApplication(*path);
    return true;
  }
  return false;
}

std::vector<Rect> LinuxWorkspace::screens() {
  return screenFrames(desktop_.snapshot().monitors);
}

}  // namespace kestro
