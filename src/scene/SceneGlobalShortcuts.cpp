#include "scene/SceneGlobalShortcuts.h"

#include <algorithm>

namespace kestro {

class SceneGlobalShortcuts::Grab final : public GlobalShortcut {
 public:
  Grab(SceneGlobalShortcuts& owner, KeyEquivalent keys, std::function<void()> pressed)
      : owner_(owner), keys_(std::move(keys)), pressed_(std::move(pressed)) {
    owner_.grabs_.push_back(this);
  }
  ~Grab() override { std::erase(owner_.grabs_, this); }
  Grab(const Grab&) = delete;
  Grab& operator=(const Grab&) = delete;

  const KeyEquivalent& keys() const { return keys_; }
  // What is called may end this grab.
  void press() const {
    const auto pressed = pressed_;
    pressed();
  }

 private:
  SceneGlobalShortcuts& owner_;
  KeyEquivalent keys_;
  std::function<void()> pressed_;
};

std::unique_ptr<GlobalShortcut> SceneGlobalShortcuts::grab(const KeyEquivalent& keys,
                                                           std::function<void()> pressed) {
  return std::make_unique<Grab>(*this, keys, std::move(pressed));
}

void SceneGlobalShortcuts::press(const KeyEquivalent& keys) {
  const auto grabs = grabs_;
  for (const Grab* grab : grabs) {
    const bool isThere = std::ranges::find(grabs_, grab) != grabs_.end();
    if (isThere && grab->keys() == keys) grab->press();
  }
}

}  // namespace kestro
