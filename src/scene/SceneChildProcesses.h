// Programs that the helper runs on a scripted desktop: every run is recorded, none takes place.
// Main thread only; what it refers to must outlive it.
#pragma once

#include "platform/ChildProcesses.h"
#include "platform/Transcript.h"
#include "scene/Scene.h"
#include "scene/SceneState.h"

namespace kestro {

class SceneChildProcesses final : public ChildProcesses {
 public:
  using Programs = std::map<std::string, SceneProgram, std::less<>>;

  SceneChildProcesses(SceneState& state, const Programs& programs, Transcript& transcript)
      : state_(state), programs_(programs), transcript_(transcript) {}

  std::variant<ExitStatus, LaunchFailure> runAndWait(
      const std::string& path, const std::vector<std::string>& arguments) override;
  std::optional<LaunchFailure> startDetached(const std::string& path,
                                             const std::vector<std::string>& arguments) override;

 private:
  // Why the scene lets the program fail; absent: it does not.
  std::optional<LaunchFailure> recordStart(const std::string& path,
                                           const std::vector<std::string>& arguments);

  SceneState& state_;
  const Programs& programs_;
  Transcript& transcript_;
};

}  // namespace kestro
