// Assertion dictionaries of any shape: a detection step never fails, and ends every call.
#include <cstddef>
#include <cstdint>
#include <string>

#include "SceneProcess.h"
#include "calls/RunningCallDetector.h"
#include "platform/scene/SceneDesktop.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string scene =
      R"({"applications": [{"pid": 10, "bundleIdentifier": "us.zoom.xos", "name": "Zoom"}], "assertions": )" +
      std::string(data, data + size) + "}";
  auto made = kestro::makeSceneDesktopFromText(scene, "input", {});
  auto* desktop = std::get_if<std::unique_ptr<kestro::Desktop>>(&made);
  if (!desktop) return 0;
  kestro::Process process((*desktop)->platform());
  auto& detector = kestro::RunningCallDetector::sharedInstance(process);
  process.shared<kestro::InfoLogger>().setShouldTrack(true);
  const kestro::Activity activity(kestro::RunningApplication{}, kestro::ActivityDetails{});
  detector.updateCallStatusForActivity(activity);
  detector.updateCallStatusForActivity(activity);
  std::string dump;
  kestro::PowerManagementAssertions::current(process, [&](std::string_view line) { dump += line; });
  if (detector.hasRunningCall() != detector.descriptionOfRunningCalls().has_value())
    __builtin_trap();
  return 0;
}
