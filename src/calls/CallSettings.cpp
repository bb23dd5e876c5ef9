#include "calls/CallSettings.h"

#include <algorithm>

#include "calls/DisabledApplications.h"
#include "platform/Process.h"

namespace kestro {
namespace {

constexpr double usualThreshold = 2.2;  // seconds: two samples may miss a call that goes on
constexpr double usualMinimumDuration = 60;

std::string key(std::string_view setting) {
  return "RunningCallDetector_" + std::string(setting);
}

bool flag(Process& process, std::string_view setting, bool usual) {
  return process.shared<HelperPreferences>().getBool(key(setting)).value_or(usual);
}

bool contains(const std::vector<std::string>& list, const std::string& text) {
  return std::ranges::find(list, text) != list.end();
}

}  // namespace

CallSettings::CallSettings(Process& process)
    : pmAssertionBasedCallDetectionEnabled(
          flag(process, "pmAssertionBasedCallDetectionEnabled", true)),
      browserBasedCallDetectionEnabled(flag(process, "browserBasedCallDetectionEnabled", true)),
      callDetectionEnabledForUnknownApps(flag(process, "callDetectionEnabledForUnknownApps", true)),
      alwaysRequiresSeparateAudioAssertions(
          flag(process, "callDetectionAlwaysRequiresSeparateAudioAssertions", false)),
      requiresSeparateAudioAssertionsIfServiceNameUnknown(
          flag(process, "callDetectionRequiresSeparateAudioAssertionsIfServiceNameUnknown", true)),
      detectCallsWhenTrackingPaused(flag(process, "detectCallsWhenTrackingPaused", false)),
      thresholdForConsideringACallToBeOver(
          process.shared<HelperPreferences>()
              .getDouble(key("thresholdForConsideringACallToBeOver"))
              .value_or(usualThreshold)),
      includeServiceNamePrefixInCallTaskTitle(
          process, key("includeServiceNamePrefixInCallTaskTitle"), false),
      appsWithCallTrackingDisabled(process, key("appsWithCallTrackingDisabled"), {}),
      appsWithCallTrackingEnabled(process, key("appsWithCallTrackingEnabled"), {}),
      process_(process),
      builtInDisabled_(builtInDisabledApplications()) {}

Seconds CallSettings::minimumCallDurationForNotifying() const {
  return Seconds(process_.shared<HelperPreferences>()
                     .getDouble(key("minimumCallDurationForNotifying"))
                     .value_or(usualMinimumDuration));
}

bool CallSettings::isDisabled(const std::string& bundleIdentifier) const {
  if (contains(appsWithCallTrackingEnabled.value(), bundleIdentifier)) return false;
  return builtInDisabled_.contains(bundleIdentifier) ||
         contains(appsWithCallTrackingDisabled.value(), bundleIdentifier);
}

}  // namespace kestro
