#include "platform/scene/SceneWorkspace.h"

namespace kestro {

std::optional<RunningApplication> SceneWorkspace::frontmostApplication() {
  return state_.frontmost ? runningApplication(*state_.frontmost) : std::nullopt;
}

std::optional<RunningApplication> SceneWorkspace::runningApplication(ProcessIdentifier process) {
  const SceneApplication* application = state_.runningApplication(process);
  return application ? std::optional(application->description) : std::nullopt;
}

std::vector<RunningApplication> SceneWorkspace::runningApplications(
    std::string_view bundleIdentifier) {
  std::vector<RunningApplication> found;
  for (const std::size_t index : state_.launchOrder) {
    const SceneApplication& application = state_.applications[index];
    if (application.isRunning && application.description.bundleIdentifier == bundleIdentifier) {
      found.push_back(application.description);
    }
  }
  return found;
}

}  // namespace kestro
