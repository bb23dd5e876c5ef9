#include "scene/SceneUserDefaults.h"

namespace kestro {

std::optional<PropertyList> SceneUserDefaults::value(std::string_view key) const {
  const PropertyList* found = preferences_ ? preferences_->find(key) : nullptr;
  return found ? std::optional(*found) : std::nullopt;
}

void SceneUserDefaults::set(std::string_view key, PropertyList value) {
  if (!preferences_) return;
  transcript_.record("preference", {{"domain", name_}, {"key", key}, {"value", value}});
  preferences_->set(std::string(key), std::move(value));
}

void SceneUserDefaults::remove(std::string_view key) {
  if (!preferences_) return;
  transcript_.record("preference", {{"domain", name_}, {"key", key}});
  preferences_->remove(key);
}

SceneUserDefaultsDatabase::SceneUserDefaultsDatabase(SceneState& state, Transcript& transcript)
    : state_(state),
      transcript_(transcript),
      standard_("defaults", state.standard, transcript),
      helperPreferences_("helperPreferences", state.helperPreferences, transcript),
      mainAppPreferences_("mainAppPreferences", state.mainAppPreferences, transcript) {}

UserDefaults* SceneUserDefaultsDatabase::suite(std::string_view name) {
  auto found = suites_.find(name);
  if (found == suites_.end()) {
    // A domain that nobody has written to opens, and is empty.
    auto preferences = state_.suites.try_emplace(std::string(name), PropertyListDictionary()).first;
    found =
        suites_.try_emplace(std::string(name), std::string(name), preferences->second, transcript_)
            .first;
  }
  return found->second.canBeOpened() ? &found->second : nullptr;
}

UserDefaults& SceneUserDefaultsDatabase::product(ProductStore store) {
  return store == ProductStore::helperPreferences ? helperPreferences_ : mainAppPreferences_;
}

}  // namespace kestro
