// Running applications and screens of a scripted desktop. Main thread only; the state must outlive
// it.
#pragma once

#include "platform/Workspace.h"
#include "platform/scene/SceneState.h"

namespace kestro {

class SceneWorkspace final : public Workspace {
 public:
  explicit SceneWorkspace(SceneState& state) : state_(state) {}

  std::optional<RunningApplication> frontmostApplication() override;
  std::optional<RunningApplication> runningApplication(ProcessIdentifier process) override;
  std::vector<RunningApplication> runningApplications(std::string_view bundleIdentifier) override;
  std::optional<std::string> executablePath(ProcessIdentifier process) override;
  std::optional<ApplicationBundle> bundleAtPath(const std::string& path) override;
  std::vector<Rect> screens() override { return state_.system.screens; }

 private:
  SceneState& state_;
};

}  // namespace kestro
