// Running applications and screens of a scripted desktop. Main thread only; what it refers to
// must outlive it.
#pragma once

#include "platform/Transcript.h"
#include "platform/Workspace.h"
#include "scene/SceneState.h"

namespace kestro {

class SceneWorkspace final : public Workspace {
 public:
  // `helper`: the helper itself, which runs whether the scene lists it or not.
  SceneWorkspace(SceneState& state, RunningApplication helper, Transcript& transcript)
      : state_(state), helper_(std::move(helper)), transcript_(transcript) {}

  std::optional<RunningApplication> frontmostApplication() override;
  std::optional<RunningApplication> runningApplication(ProcessIdentifier process) override;
  std::vector<RunningApplication> runningApplications(std::string_view bundleIdentifier) override;
  std::optional<std::string> executablePath(ProcessIdentifier process) override;
  std::optional<ApplicationBundle> bundleAtPath(const std::string& path) override;
  // A running application's, else that of an installed one.
  std::optional<std::string> applicationPath(std::string_view bundleIdentifier) override;
  void openApplication(const std::string& bundlePath) override;
  // The designed platform always has them.
  bool openAccessibilitySettings() override { return true; }
  std::vector<Rect> screens() override { return state_.system.screens; }

 private:
  SceneState& state_;
  RunningApplication helper_;
  Transcript& transcript_;
};

}  // namespace kestro
