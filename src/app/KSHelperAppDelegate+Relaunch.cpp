// Relaunching, and noticing that the helper's bundle was replaced.
#include <fmt/format.h>

#include <filesystem>

#include "app/KSHelperAppDelegate.h"
#include "app/Relaunch.h"
#include "platform/Files.h"
#include "platform/SystemLog.h"

namespace kestro {
namespace {

constexpr Seconds delayFromMenu{5};
constexpr Seconds delayForUpdate{60};
constexpr Seconds quietTimeBeforeUpdateCheck{5};
constexpr const char* missing = "(nil)";

std::optional<std::string> buildIn(Files& files, const std::string& informationPath) {
  const auto information = files.dictionary(informationPath);
  const PropertyList* value = information ? information->find("CFBundleVersion") : nullptr;
  const auto* build = value ? value->get<std::string>() : nullptr;
  return build ? std::optional(*build) : std::nullopt;
}

}  // namespace

void KSHelperAppDelegate::relaunch() {
  relaunchWithDelay(delayFromMenu, {{"reason", "IBAction"}});
}

void KSHelperAppDelegate::relaunchWithDelay(Seconds delay, PropertyListDictionary attributes) {
  auto relaunch = Relaunch::request(process_, delay, std::move(attributes));
  if (!relaunch) return;
  process_.platform().runLoop.sleep(Relaunch::pauseAfterRequest);
  relaunch->report();
  process_.platform().runLoop.sleep(Relaunch::pauseAfterReport);
  relaunch->prepare();
}

// The same, while the main loop goes on.
void KSHelperAppDelegate::relaunchInBackground(Seconds delay, PropertyListDictionary attributes) {
  scheduleOnce(Seconds(0), [this, delay, attributes = std::move(attributes)] {
    auto requested = Relaunch::request(process_, delay, attributes);
    if (!requested) return;
    auto relaunch = std::make_shared<Relaunch>(*std::move(requested));
    scheduleOnce(Relaunch::pauseAfterRequest, [relaunch] { relaunch->report(); });
    scheduleOnce(Relaunch::pauseAfterRequest + Relaunch::pauseAfterReport,
                 [relaunch] { relaunch->prepare(); });
  });
}

// A burst of events leads to one check, some time after the last.
void KSHelperAppDelegate::pathWatcherEventOccurred(SCEvents&, const SCEvent& event) {
  process_.platform().log.write("Update detected - initiating relaunch...");
  if (isFlagSet("KSHelperAppDelegate_suppressUpdateAppRelaunches")) {
    process_.platform().log.write("Update relaunch suppressed by preferences");
    return;
  }
  updateCheck_ = process_.platform().runLoop.scheduleAfter(
      quietTimeBeforeUpdateCheck, [this, event] { handlePathWatcherEvent(event); });
}

void KSHelperAppDelegate::handlePathWatcherEvent(const SCEvent& event) {
  const std::filesystem::path bundle = process_.platform().mainBundle.path;
  const std::string path = bundle / "Contents" / "Info.plist";
  const auto newBuild = buildIn(process_.platform().files, path);
  if (newBuild && newBuild == currentAppBuild_) {
    process_.platform().log.write(
        fmt::format("Old and new build are equal ({}); skipping relaunch", *newBuild));
    return;
  }
  if (!newBuild) {
    process_.platform().log.write(
        fmt::format("Warning: Could not read new app build version from Info.plist at {}", path));
    HelperHelper::logEvent(process_, "KSHelperAppDelegate.relaunchForUpdate.couldNotReadNewVersion",
                           {{"infoPlistPath", path}, {"eventPath", event.eventPath}}, true);
  }
  const auto attributes = updateAttributes(event, newBuild);
  HelperHelper::logEvent(process_, "KSHelperAppDelegate.relaunchForUpdate", attributes, true);
  relaunchInBackground(delayForUpdate, attributes);
}

PropertyListDictionary KSHelperAppDelegate::updateAttributes(
    const SCEvent& event, const std::optional<std::string>& newBuild) const {
  return {{"reason", "pathWatcherTriggered"},
          {"eventPath", event.eventPath},
          {"eventFlag", event.eventFlag},
          {"currentAppBuild", currentAppBuild_.value_or(missing)},
          {"newAppBuild", newBuild.value_or(missing)},
          {"oldAndNewBuildAreEqual", false}};
}

}  // namespace kestro
