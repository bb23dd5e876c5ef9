// Running applications as the owners of windows, and screens. Main thread only.
#pragma once

#include "linux/applications/ApplicationIdentity.h"
#include "linux/process/SampleGeneration.h"
#include "linux/windows/x11/X11Desktop.h"
#include "platform/ChildProcesses.h"
#include "platform/Workspace.h"

namespace kestro {

class LinuxWorkspace final : public Workspace {
 public:
  LinuxWorkspace(X11Desktop& desktop, DesktopEntries& entries, ApplicationIdentity& identity,
                 ChildProcesses& childProcesses, SampleGeneration& generation)
      : desktop_(desktop),
        entries_(entries),
        identity_(identity),
        childProcesses_(childProcesses),
        generation_(generation) {}

  // The owner of the active window. Begins a new generation: a sample starts with this question.
  std::optional<RunningApplication> frontmostApplication() override;
  // Absent when there is no such process.
  std::optional<RunningApplication> runningApplication(ProcessIdentifier process) override;
  // Those with a window on any desktop, in the order of their process identifiers; and the helper
  // itself.
  std::vector<RunningApplication> runningApplications(std::string_view bundleIdentifier) override;
  std::optional<std::string> executablePath(ProcessIdentifier process) override;
  // Applications have no bundles here.
  std::optional<ApplicationBundle> bundleAtPath(const std::string&) override { return {}; }
  // The desktop file of that name.
  std::optional<std::string> applicationPath(std::string_view bundleIdentifier) override;
  void openApplication(const std::string& desktopFile) override;
  bool openAccessibilitySettings() override;
  std::vector<Rect> screens() override;

 private:
  X11Desktop& desktop_;
  DesktopEntries& entries_;
  ApplicationIdentity& identity_;
  ChildProcesses& childProcesses_;
  SampleGeneration& generation_;
};

}  // namespace kestro
