// Running applications as the owners of windows, and screens. Main thread only.
#pragma once

#include "linux/applications/ApplicationIdentity.h"
#include "linux/process/SampleGeneration.h"
#include "linux/windows/x11/X11Desktop.h"
#include "platform/Workspace.h"

namespace kestro {

class LinuxWorkspace final : public Workspace {
 public:
  LinuxWorkspace(X11Desktop& desktop, ApplicationIdentity& identity, SampleGeneration& generation)
      : desktop_(desktop), identity_(identity), generation_(generation) {}

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
  std::optional<std::string> applicationPath(std::string_view) override { return {}; }
  void openApplication(const std::string&) override {}
  std::vector<Rect> screens() override;

 private:
  X11Desktop& desktop_;
  ApplicationIdentity& identity_;
  SampleGeneration& generation_;
};

}  // namespace kestro
