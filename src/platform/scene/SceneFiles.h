// The files of a scripted desktop. Main thread only; the state must outlive it.
#pragma once

#include "platform/Files.h"
#include "platform/scene/SceneState.h"

namespace kestro {

class SceneFiles final : public Files {
 public:
  explicit SceneFiles(const SceneState& state) : state_(state) {}

  std::optional<PropertyListDictionary> dictionary(const std::string& path) override;

 private:
  const SceneState& state_;
};

}  // namespace kestro
