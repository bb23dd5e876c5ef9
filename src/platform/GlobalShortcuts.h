// Keys that reach the helper whatever application is in front. Main thread only.
#pragma once

#include <functional>
#include <memory>

#include "platform/Menu.h"

namespace kestro {

// Listens until it is destroyed.
class GlobalShortcut {
 public:
  virtual ~GlobalShortcut() = default;
};

class GlobalShortcuts {
 public:
  virtual ~GlobalShortcuts() = default;
  // Null when the key cannot be had, because another program has it.
  virtual std::unique_ptr<GlobalShortcut> grab(const KeyEquivalent& keys,
                                               std::function<void()> pressed) = 0;
};

}  // namespace kestro
