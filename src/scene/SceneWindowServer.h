// The window list of a scripted desktop. Main thread only; state and transcript must outlive it.
#pragma once

#include "platform/Transcript.h"
#include "platform/WindowServer.h"
#include "scene/SceneState.h"

namespace kestro {

class SceneWindowServer final : public WindowServer {
 public:
  SceneWindowServer(const SceneState& state, Transcript& transcript)
      : state_(state), transcript_(transcript) {}

  std::vector<WindowEntry> onScreenWindows() override { return state_.windows; }
  bool hasScreenCaptureAccess() override { return state_.system.screenCaptureAccess; }
  void requestScreenCaptureAccess() override {
    transcript_.record("screenCapture", {{"requested", true}});
  }

 private:
  const SceneState& state_;
  Transcript& transcript_;
};

}  // namespace kestro
