// From the start of the helper to its first sample, and where the time goes: in milliseconds since
// the start, when each part of the start-up has been reached.
#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <map>
#include <memory>
#include <stdexcept>

#include "app/runHelper.h"
#include "scene/SceneDesktop.h"

namespace kestro {
namespace {

constexpr std::string_view scene = R"({
  "applications": [{"pid": 1, "bundleIdentifier": "com.example.editor", "name": "Editor",
    "accessibility": {"AXMainWindow": {"ref": "w"}, "AXFocusedWindow": {"ref": "w"},
      "children": [{"id": "w", "AXRole": "AXWindow", "AXTitle": "Letter"}]}}],
  "frontmost": 1, "end": 0.001})";

// What the transcript shows first of a part of the start-up.
struct Part {
  const char* name;
  std::string_view event;
};
constexpr std::array<Part, 6> parts{
    {{"1_lists_and_preferences", "MainAppPreferences sharedInstance"},
     {"2_menu_and_texts", "KSStartupManager shouldStartAtLogin"},
     {"3_tracking", "InfoLogger setPresenter"},
     {"4_database", "DatabaseWrapper sharedInstance"},
     {"5_timers", "HelperHelper initializeHelper"},
     {"6_first_sample", "activity"}}};

using Milliseconds = std::chrono::duration<double, std::milli>;

class Stopwatch final : public TranscriptWriter {
 public:
  explicit Stopwatch(std::map<std::string_view, double>& total) : total_(total) {}

  void write(Seconds, std::string_view kind, const PropertyListDictionary& fields) override {
    const PropertyList* operation = fields.find("operation");
    const auto* name = operation ? operation->get<std::string>() : nullptr;
    const Milliseconds elapsed = std::chrono::steady_clock::now() - start_;
    for (const Part& part : parts) {
      if (part.event == kind || (name && part.event == *name)) total_[part.name] += elapsed.count();
    }
  }

 private:
  std::map<std::string_view, double>& total_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

void start(benchmark::State& state) {
  std::map<std::string_view, double> total;
  for (auto _ : state) {
    DesktopOptions options;
    options.transcriptWriter = std::make_unique<Stopwatch>(total);
    auto made = makeSceneDesktopFromText(scene, "start", std::move(options));
    auto* desktop = std::get_if<std::unique_ptr<Desktop>>(&made);
    if (!desktop) throw std::logic_error("the scene cannot be read");
    benchmark::DoNotOptimize(runHelper(**desktop));
  }
  for (const auto& [name, milliseconds] : total) {
    state.counters[std::string(name)] =
        benchmark::Counter(milliseconds, benchmark::Counter::kAvgIterations);
  }
}

BENCHMARK(start)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kestro
