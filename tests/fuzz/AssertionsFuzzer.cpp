// Assertion dictionaries of any shape, with the usual settings and with others: a detection step
// never fails, and once nothing is held any more every call ends.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "calls/RunningCallDetector.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "scene/SceneDesktop.h"

namespace kestro {
namespace {

constexpr std::array<std::string_view, 2> settings{"{}", R"({
  "PowerManagementAssertions_suppressUSBAudioDevices": true,
  "PowerManagementAssertions_treatWebRTCLikeAudioInAndOutAssertions": true,
  "PowerManagementAssertions_treatOnACallLikeAudioInAndOutAssertions": false,
  "RunningCallDetector_callDetectionRequiresSeparateAudioAssertionsIfServiceNameUnknown": false,
  "RunningCallDetector_includeServiceNamePrefixInCallTaskTitle": true,
  "RunningCallDetector_minimumCallDurationForNotifying": 0,
  "RunningCallDetector_appsWithCallTrackingEnabled": ["com.apple.Music"],
  "RunningCallDetector_extraAppsForCallTracking": ["example:Talk", "::"]})"};

// Nothing is held from the third second on; the scene is over well after the threshold. The input
// comes last: what it closes too early is refused, or a key that stands twice.
std::string sceneOf(std::string_view preferences, std::string_view assertions) {
  std::string scene = R"({"product": {"database": false}, "applications": [
    {"pid": 10, "bundleIdentifier": "us.zoom.xos", "name": "Zoom"},
    {"pid": 11, "bundleIdentifier": "com.google.Chrome", "name": "Google Chrome"},
    {"pid": 12, "executable": "/Apps/Talk.app/Contents/helper", "name": "Talk Helper"},
    {"pid": 13, "bundleIdentifier": "com.apple.Music", "name": "Music"}],
    "installed": [{"bundleIdentifier": "com.example.talk", "name": "Talk", "path": "/Apps/Talk.app"}],
    "steps": [{"at": 3, "assertions": {}}], "end": 10, "helperPreferences": )";
  return scene.append(preferences).append(", \"assertions\": ").append(assertions).append("}");
}

void detect(Platform& platform) {
  Process process(platform);
  auto& detector = RunningCallDetector::sharedInstance(process);
  process.shared<InfoLogger>().setShouldTrack(true);
  ActivityDetails details;
  details.windowTitle = "Meet - Weekly sync – Google Chrome";
  details.documentPath = "https://meet.google.com/abc";
  Activity activity(RunningApplication{}, details);
  const auto step = [&] {
    detector.updateCallStatusForActivity(activity);
    if (detector.hasRunningCall() != detector.descriptionOfRunningCalls().has_value())
      __builtin_trap();
  };
  std::string dump;
  PowerManagementAssertions::current(process, [&](std::string_view line) { dump += line; });
  step();
  const auto samples = platform.runLoop.scheduleEvery(Seconds(1), step);
  platform.runLoop.run();
  if (detector.hasRunningCall()) __builtin_trap();
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string assertions(data, data + size);
  for (const std::string_view preferences : kestro::settings) {
    auto made =
        kestro::makeSceneDesktopFromText(kestro::sceneOf(preferences, assertions), "input", {});
    auto* desktop = std::get_if<std::unique_ptr<kestro::Desktop>>(&made);
    if (!desktop) return 0;
    kestro::detect((*desktop)->platform());
  }
  return 0;
}
