// The assertions of a scripted desktop. Main thread only; the state must outlive it.
#pragma once

#include "platform/PowerManagement.h"
#include "scene/SceneState.h"

namespace kestro {

class ScenePowerManagement final : public PowerManagement {
 public:
  explicit ScenePowerManagement(const SceneState& state) : state_(state) {}

  std::optional<AssertionsByProcess> assertionsByProcess() override {
    const auto* given = std::get_if<AssertionsByProcess>(&state_.assertions);
    return given ? std::optional(*given) : std::nullopt;
  }

 private:
  const SceneState& state_;
};

}  // namespace kestro
