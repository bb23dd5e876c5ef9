#include "scene/SceneState.h"

namespace kestro {

SceneApplication* SceneState::runningApplication(ProcessIdentifier process) {
  for (const std::size_t index : launchOrder) {
    SceneApplication& application = applications[index];
    if (application.isRunning && application.description.processIdentifier == process) {
      return &application;
    }
  }
  return nullptr;
}

}  // namespace kestro
