// The login items of a scripted desktop: the product's condition `launchAtLogin`, on unless it says
// otherwise. Main thread only.
#pragma once

#include "platform/LoginItems.h"
#include "scene/SceneState.h"

namespace kestro {

class SceneLoginItems final : public LoginItems {
 public:
  explicit SceneLoginItems(SceneState& state) : state_(state) {}

  bool startsAtLogin() const override {
    const PropertyList* given = state_.product.find(condition);
    const bool* starts = given ? given->get<bool>() : nullptr;
    return !starts || *starts;
  }
  void setStartsAtLogin(bool starts) override { state_.product.set(condition, starts); }

 private:
  static constexpr const char* condition = "launchAtLogin";
  SceneState& state_;
};

}  // namespace kestro
