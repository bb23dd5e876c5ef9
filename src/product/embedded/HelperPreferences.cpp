#include "platform/Process.h"
#include "platform/UserDefaults.h"
#include "product/KestroLegacy.h"

namespace kestro {
namespace {

constexpr const char* playSoundKey = "RunningCallDetector_playSoundWhenMeetingDetected";

UserDefaults& store(const Process& process) {
  return process.platform().defaults.product(ProductStore::helperPreferences);
}

}  // namespace

bool HelperPreferences::advancedAccessibilityTrackingEnabled() const {
  return getBool("advancedAccessibilityTrackingEnabled").value_or(true);
}

bool HelperPreferences::playSoundWhenMeetingDetected() const {
  return getBool(playSoundKey).value_or(false);
}

void HelperPreferences::setPlaySoundWhenMeetingDetected(bool plays) const {
  set(plays, playSoundKey);
}

std::optional<bool> HelperPreferences::getBool(std::string_view key) const {
  return store(process_).boolean(key);
}

std::optional<double> HelperPreferences::getDouble(std::string_view key) const {
  return store(process_).number(key);
}

std::optional<std::string> HelperPreferences::getString(std::string_view key) const {
  return store(process_).string(key);
}

std::optional<std::string> HelperPreferences::getNonEmptyString(std::string_view key) const {
  auto text = getString(key);
  return text && !text->empty() ? text : std::nullopt;
}

std::optional<std::vector<std::string>> HelperPreferences::getStringList(
    std::string_view key) const {
  return store(process_).stringList(key);
}

void HelperPreferences::set(PropertyList object, std::string_view key) const {
  store(process_).set(key, std::move(object));
}

}  // namespace kestro
