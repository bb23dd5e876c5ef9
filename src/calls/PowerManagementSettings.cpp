#include "calls/PowerManagementSettings.h"

#include "platform/Process.h"
#include "platform/UserDefaults.h"
#include "product/KestroLegacy.h"

namespace kestro {
namespace {

constexpr double usualMaximumAge = 4 * 60 * 60;

}  // namespace

PowerManagementSettings::PowerManagementSettings(Process& process) {
  const auto& preferences = process.shared<HelperPreferences>();
  const auto flag = [&](const char* key, bool usual) {
    return preferences.getBool(std::string("PowerManagementAssertions_") + key).value_or(usual);
  };
  suppressUSBAudioDevices = flag("suppressUSBAudioDevices", false);
  treatWebRTCLikeAudioInAndOutAssertions = flag("treatWebRTCLikeAudioInAndOutAssertions", false);
  treatOnACallLikeAudioInAndOutAssertions = flag("treatOnACallLikeAudioInAndOutAssertions", true);
  maximumPMAssertionAge = Seconds(
      preferences.getDouble("RunningCallDetector_maximumPMAssertionAge").value_or(usualMaximumAge));
  dumpRecordedAssertions = process.platform()
                               .defaults.standard()
                               .boolean("PowerManagementAssertions_dumpRecordedAssertions")
                               .value_or(false);
}

}  // namespace kestro
