// What one sample costs on a scripted desktop: time, and requests to other applications.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <memory>

#include "SceneProcess.h"
#include "calls/RunningCallDetector.h"
#include "platform/Accessibility.h"
#include "probe/KSInfoExtractor.h"

namespace kestro {
namespace {

// A browser-like window with a page of about `nodes` elements: rows of a link and a text.
std::string pageScene(std::string_view bundleIdentifier, int nodes) {
  std::string rows;
  for (int row = 0; row < nodes / 3; ++row) {
    rows += fmt::format(
        R"({}{{"AXRole": "AXGroup", "children": [{{"AXRole": "AXLink", "AXTitle": "Link {}"}}, {{"AXRole": "AXStaticText", "AXValue": "Text"}}]}})",
        row ? "," : "", row);
  }
  return fmt::format(
      R"({{"applications": [{{"pid": 1, "bundleIdentifier": "{}", "name": "App", "executable": "/opt/app",
        "accessibility": {{"AXMainWindow": {{"ref": "w"}}, "AXFocusedWindow": {{"ref": "w"}}, "AXWindows": [{{"ref": "w"}}], "children": [
          {{"id": "w", "AXRole": "AXWindow", "AXTitle": "A page – Browser", "AXFullScreen": false,
            "AXPosition": {{"point": [0, 0]}}, "AXSize": {{"size": [1200, 800]}}, "children": [
              {{"AXRole": "AXScrollArea", "children": [{{"AXRole": "AXWebArea", "AXTitle": "A page",
                "AXURL": {{"url": "https://page.example/"}}, "children": [{}]}}]}}]}}]}}}}], "frontmost": 1}})",
      bundleIdentifier, rows);
}

void sample(benchmark::State& state, const std::string& bundleIdentifier, int nodes) {
  SceneProcess scene(pageScene(bundleIdentifier, nodes));
  auto& probe = scene.process().shared<KSInfoExtractor>();
  const Accessibility& accessibility = scene.process().platform().accessibility;
  const auto before = accessibility.requestCount();
  for (auto _ : state) {
    auto activity = probe.currentActivity();
    probe.callInfoExtractorForActivity(*activity);
    benchmark::DoNotOptimize(activity);
  }
  state.counters["requests"] =
      benchmark::Counter(static_cast<double>(accessibility.requestCount() - before),
                         benchmark::Counter::kAvgIterations);
}

// A detection step on a desktop where so many assertions are held, two of them by a call.
void detectionStep(benchmark::State& state) {
  std::string assertions;
  for (int number = 0; number < state.range(0); ++number) {
    assertions += fmt::format(
        R"({}{{"AssertLevel": 255, "AssertType": "PreventUserIdleSystemSleep", "AssertName": "Assertion {}", "AssertionOnBehalfOfPID": {}, "ResourcesUsed": ["{}"]}})",
        number ? "," : "", number, number < 2 ? 10 : 1000 + number,
        number % 2 ? "audio-in" : "audio-out");
  }
  SceneProcess scene(fmt::format(
      R"({{"applications": [{{"pid": 10, "bundleIdentifier": "us.zoom.xos", "name": "Zoom"}}], "assertions": {{"70": [{}]}}}})",
      assertions));
  auto& detector = RunningCallDetector::sharedInstance(scene.process());
  scene.process().shared<InfoLogger>().setShouldTrack(true);
  Activity activity(RunningApplication{}, ActivityDetails{});
  for (auto _ : state)
    detector.updateCallStatusForActivity(activity);
}

BENCHMARK(detectionStep)->Arg(0)->Arg(10)->Arg(500);
BENCHMARK_CAPTURE(sample, small_tree, "com.example.editor", 30);
BENCHMARK_CAPTURE(sample, page_of_5000_nodes, "com.example.editor", 5000);
BENCHMARK_CAPTURE(sample, web_area_of_5000_nodes, "com.stack-beta.io", 5000);

}  // namespace
}  // namespace kestro
