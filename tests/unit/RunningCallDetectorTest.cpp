// What the detector tells of the calls that run, for the product's own display.
#include "calls/RunningCallDetector.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "SceneProcess.h"
#include "platform/RunLoop.h"

namespace kestro {
namespace {

std::string audio(int pid, std::string_view resources) {
  return fmt::format(
      R"({{"AssertLevel": 255, "AssertType": "PreventUserIdleSystemSleep", "AssertionOnBehalfOfPID": {}, "ResourcesUsed": [{}]}})",
      pid, resources);
}

std::string separately(int pid) {
  return audio(pid, R"("audio-in")") + ", " + audio(pid, R"("audio-out")");
}

// The calls start in another order than that of their identifiers, and that of their processes.
std::string sceneOfParallelCalls() {
  const std::string talk = audio(10, R"("audio-in", "audio-out")");
  const std::string zoom = separately(13);
  const std::string slack = separately(12);
  const std::string discord = separately(11);
  return fmt::format(
      R"({{"product": {{"database": false}}, "applications": [
        {{"pid": 10, "bundleIdentifier": "com.example.talk", "name": "Talk"}},
        {{"pid": 11, "bundleIdentifier": "com.hnc.Discord", "name": "Discord"}},
        {{"pid": 12, "bundleIdentifier": "com.tinyspeck.slackmacgap", "name": "Slack", "accessibility": {{
          "children": [{{"AXRole": "AXWindow", "AXTitle": "Huddle | harbour-crew | 12:03"}}]}}}},
        {{"pid": 13, "bundleIdentifier": "us.zoom.xos", "name": "Zoom"}}],
      "assertions": {{"70": [{0}]}},
      "steps": [{{"at": 10, "assertions": {{"70": [{0}, {1}]}}}},
                {{"at": 70, "assertions": {{"70": [{0}, {1}, {2}]}}}},
                {{"at": 150, "assertions": {{"70": [{0}, {1}, {2}, {3}]}}}}],
      "end": 170}})",
      talk, zoom, slack, discord);
}

TEST(RunningCallDetector, describesParallelCalls) {
  SceneProcess scene(sceneOfParallelCalls());
  auto& process = scene.process();
  process.shared<InfoLogger>().setShouldTrack(true);
  auto& detector = RunningCallDetector::sharedInstance(process);
  Activity activity(RunningApplication{}, ActivityDetails{});
  detector.updateCallStatusForActivity(activity);
  EXPECT_FALSE(detector.hasRunningCall());  // one that would not be offered
  EXPECT_EQ(detector.descriptionOfRunningCalls(), std::nullopt);

  RunLoop& runLoop = process.platform().runLoop;
  const auto samples =
      runLoop.scheduleEvery(Seconds(1), [&] { detector.updateCallStatusForActivity(activity); });
  bool hadOne = false;
  std::optional<std::string> one;
  const auto early = runLoop.scheduleAfter(Seconds(20.5), [&] {
    hadOne = detector.hasRunningCall();
    one = detector.descriptionOfRunningCalls();
  });
  std::optional<std::string> three;
  const auto late =
      runLoop.scheduleAfter(Seconds(160.5), [&] { three = detector.descriptionOfRunningCalls(); });
  runLoop.run();
  EXPECT_TRUE(hadOne);
  EXPECT_EQ(one, "Zoom call (10 s)");
  EXPECT_EQ(three, "Zoom call (2 min), harbour-crew (1 min), Discord call (10 s)");
}

// The tracking loop asks beforehand; the detector does not rely on it.
TEST(RunningCallDetector, detectsNothingWhileTrackingIsPausedUnlessWanted) {
  const std::pair<const char*, bool> cases[]{
      {"{}", false},
      {R"({"RunningCallDetector_detectCallsWhenTrackingPaused": true})", true},
  };
  for (const auto& [preferences, isDetected] : cases) {
    SceneProcess scene(fmt::format(
        R"({{"applications": [{{"pid": 13, "bundleIdentifier": "us.zoom.xos", "name": "Zoom"}}],
          "assertions": {{"70": [{}]}}, "helperPreferences": {}}})",
        separately(13), preferences));
    auto& detector = RunningCallDetector::sharedInstance(scene.process());
    Activity activity(RunningApplication{}, ActivityDetails{});
    detector.updateCallStatusForActivity(activity);
    EXPECT_EQ(detector.hasRunningCall(), isDetected) << preferences;
  }
}

}  // namespace
}  // namespace kestro
