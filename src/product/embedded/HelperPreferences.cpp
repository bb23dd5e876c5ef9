#include "platform/Process.h"
#include "platform/UserDefaults.h"
#include "product/KestroLegacy.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {
namespace {

constexpr const char* askAfterIdleKey = "shouldAskForTaskAfterIdle";
constexpr const char* playSoundKey = "RunningCallDetector_playSoundWhenMeetingDetected";

UserDefaults& store(const Process& process) {
  return process.platform().defaults.product(ProductStore::helperPreferences);
}

}  // namespace

MainAppPreferences& MainAppPreferences::sharedInstance(Process& process) {
  return process.shared<MainAppPreferences>();
}

MainAppPreferences::MainAppPreferences(Process& process) : process_(process) {
  recordOperation(process, "MainAppPreferences sharedInstance");
}

bool MainAppPreferences::onboardingHasCompleted() const {
  return process_.platform()
      .defaults.product(ProductStore::mainAppPreferences)
      .boolean("onboardingHasCompleted")
      .value_or(true);
}

HelperPreferences& HelperPreferences::sharedInstance(Process& process) {
  recordOperation(process, "HelperPreferences sharedInstance");
  return process.shared<HelperPreferences>();
}

bool HelperPreferences::advancedAccessibilityTrackingEnabled() const {
  return getBool("advancedAccessibilityTrackingEnabled").value_or(true);
}

bool HelperPreferences::playSoundWhenMeetingDetected() const {
  return getBool(playSoundKey).value_or(false);
}

void HelperPreferences::setPlaySoundWhenMeetingDetected(bool plays) const {
  set(plays, playSoundKey);
}

bool HelperPreferences::statusItemVisible() const {
  return getBool("statusItemVisible").value_or(true);
}

bool HelperPreferences::shouldAskForTaskAfterIdle() const {
  return getBool(askAfterIdleKey).value_or(false);
}

void HelperPreferences::setShouldAskForTaskAfterIdle(bool asks) const {
  set(asks, askAfterIdleKey);
}

bool HelperPreferences::shouldSuspendTrackingUponIdle() const {
  return getBool("shouldSuspendTrackingUponIdle").value_or(true);
}

std::optional<MASShortcut> HelperPreferences::getShortcut(const std::string& key) const {
  if (const auto stored = store(process_).value(key)) {
    return MASShortcut::fromPropertyList(*stored);
  }
  const PropertyList* given = process_.platform().productConditions.find(key);
  return given ? MASShortcut::fromPropertyList(*given) : std::nullopt;
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
