// Preferences of a scripted desktop. What the helper writes is recorded; what steps change is not.
// Main thread only; state and transcript must outlive them.
#pragma once

#include <map>
#include <string>

#include "platform/Transcript.h"
#include "platform/UserDefaults.h"
#include "scene/SceneState.h"

namespace kestro {

class SceneUserDefaults final : public UserDefaults {
 public:
  // `name` is the domain's in the transcript.
  SceneUserDefaults(std::string name, ScenePreferences& preferences, Transcript& transcript)
      : name_(std::move(name)), preferences_(preferences), transcript_(transcript) {}

  bool canBeOpened() const { return preferences_.has_value(); }

  std::optional<PropertyList> value(std::string_view key) const override;
  void set(std::string_view key, PropertyList value) override;
  void remove(std::string_view key) override;
  void synchronize() override {}

 private:
  std::string name_;
  ScenePreferences& preferences_;
  Transcript& transcript_;
};

class SceneUserDefaultsDatabase final : public UserDefaultsDatabase {
 public:
  SceneUserDefaultsDatabase(SceneState& state, Transcript& transcript);

  UserDefaults& standard() override { return standard_; }
  UserDefaults* suite(std::string_view name) override;
  UserDefaults& product(ProductStore store) override;

 private:
  SceneState& state_;
  Transcript& transcript_;
  SceneUserDefaults standard_;
  SceneUserDefaults helperPreferences_;
  SceneUserDefaults mainAppPreferences_;
  std::map<std::string, SceneUserDefaults, std::less<>> suites_;  // those asked for so far
};

}  // namespace kestro
