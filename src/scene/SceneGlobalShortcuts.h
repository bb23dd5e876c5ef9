// Shortcuts of a scripted desktop: steps press them. Main thread only.
#pragma once

#include <vector>

#include "platform/GlobalShortcuts.h"

namespace kestro {

class SceneGlobalShortcuts final : public GlobalShortcuts {
 public:
  std::unique_ptr<GlobalShortcut> grab(const KeyEquivalent& keys,
                                       std::function<void()> pressed) override;

  // Reaches everyone who listens to these keys.
  void press(const KeyEquivalent& keys);

 private:
  class Grab;
  std::vector<const Grab*> grabs_;  // each takes itself out when it is destroyed
};

}  // namespace kestro
