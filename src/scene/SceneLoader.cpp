// The top level of a scene: see Scene.h for what is offered.
#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "foundation/Iso8601.h"
#include "scene/DesktopLoader.h"
#include "scene/ElementLoader.h"
#include "scene/PropertyListLoader.h"
#include "scene/Scene.h"
#include "scene/StepLoader.h"

namespace kestro {
namespace {

constexpr double latestEnd = 1e8;
constexpr Seconds timeAfterLastStep{1};
constexpr std::string_view usualStart = "2026-03-02T09:00:00Z";

constexpr auto topLevelKeys = std::to_array<std::string_view>(
    {"description", "about",       "start",      "timeZone",  "end",
     "arguments",   "random",      "system",     "bundle",    "defaults",
     "suites",      "product",     "files",      "installed", "helperPreferences",
     "frontmost",   "windows",     "assertions", "processes", "mainAppPreferences",
     "steps",       "applications"});

MainBundle ordinaryBundle() {
  const std::string path = "/Applications/Kestro.app/Contents/Library/LoginItems/KestroHelper.app";
  return {KESTRO_BUNDLE_IDENTIFIER, path, path + "/Contents/MacOS/KestroHelper", "1"};
}

MainBundle loadBundle(const JsonNode& node) {
  node.expectKeys({"identifier", "path", "executable", "build"});
  MainBundle bundle = ordinaryBundle();
  if (const auto identifier = node.find("identifier")) bundle.identifier = identifier->text();
  if (const auto path = node.find("path")) {
    bundle.path = path->text();
    bundle.executablePath =
        std::filesystem::path(bundle.path) / "Contents" / "MacOS" / "KestroHelper";
  }
  if (const auto executable = node.find("executable")) bundle.executablePath = executable->text();
  if (node.has("build")) bundle.build = loadOptionalText(node, "build");
  return bundle;
}

TimeZone loadTimeZone(const JsonNode& node) {
  auto zone = TimeZone::named(node.text());
  if (!zone) node.fail(fmt::format("unknown time zone '{}'", node.text()));
  return *std::move(zone);
}

SceneProgram loadProgram(const JsonNode& node) {
  node.expectKeys({"fails", "does"});
  if (node.size() != 1) node.fail("expected either 'fails' or 'does'");
  if (const auto failure = node.find("fails")) return {failure->text()};
  const JsonNode does = node.member("does");
  if (does.text() != "nothing") does.fail("expected \"nothing\"");
  return {};
}

// Reads the document into one scene, member by member.
class SceneLoader {
 public:
  explicit SceneLoader(const JsonNode& root) : root_(root) {}

  Scene load() {
    root_.expectKeys(topLevelKeys);
    loadSettings();
    loadPreferences();
    loadDesktop();
    loadSteps();
    return std::move(scene_);
  }

 private:
  template <class Reader>
  void ifGiven(std::string_view key, Reader read) {
    if (const auto node = root_.find(key)) read(*node);
  }

  void loadSettings() {
    scene_.start = *parseIso8601(usualStart);
    scene_.bundle = ordinaryBundle();
    ifGiven("description", [&](const JsonNode& node) { scene_.description = node.text(); });
    ifGiven("about", [&](const JsonNode& node) { scene_.about = node.texts(); });
    ifGiven("start", [&](const JsonNode& node) { scene_.start = loadDate(node); });
    ifGiven("timeZone", [&](const JsonNode& node) { scene_.timeZone = loadTimeZone(node); });
    ifGiven("arguments", [&](const JsonNode& node) { scene_.arguments = node.texts(); });
    ifGiven("random", [&](const JsonNode& node) { scene_.random = node.integer(); });
    ifGiven("bundle", [&](const JsonNode& node) { scene_.bundle = loadBundle(node); });
    ifGiven("processes", [&](const JsonNode& node) {
      node.forEachMember([&](const std::string& path, const JsonNode& program) {
        scene_.processes[path] = loadProgram(program);
      });
    });
  }

  void loadPreferences() {
    SceneState& state = scene_.initialState;
    ifGiven("defaults", [&](const JsonNode& node) { state.standard = loadDictionary(node); });
    ifGiven("suites", [&](const JsonNode& node) { applyStep(state, loadSuites(node)); });
    ifGiven("helperPreferences",
            [&](const JsonNode& node) { state.helperPreferences = loadDictionary(node); });
    ifGiven("mainAppPreferences",
            [&](const JsonNode& node) { state.mainAppPreferences = loadDictionary(node); });
    ifGiven("product",
            [&](const JsonNode& node) { applyChanges(state.product, loadProductChanges(node)); });
    ifGiven("files", [&](const JsonNode& node) { state.files = loadFiles(node); });
    ifGiven("assertions", [&](const JsonNode& node) { state.assertions = loadAssertions(node); });
  }

  void loadDesktop() {
    SceneState& state = scene_.initialState;
    ifGiven("system",
            [&](const JsonNode& node) { applySystemChanges(state.system, loadSystem(node)); });
    ifGiven("applications", [&](const JsonNode& node) { loadApplications(node); });
    ifGiven("installed", [&](const JsonNode& node) {
      node.forEachItem([&](const JsonNode& application) {
        state.installed.push_back(loadInstalledApplication(application));
      });
    });
    ifGiven("windows", [&](const JsonNode& node) { state.windows = loadWindows(node); });
    scene_.elementsById = elements_.elementsById();
  }

  void loadApplications(const JsonNode& node) {
    SceneState& state = scene_.initialState;
    elements_.declareElements(node);
    node.forEachItem([&](const JsonNode& application) {
      const JsonNode pid = application.expectObject().member("pid");
      const ProcessIdentifier process = loadProcessIdentifier(pid);
      if (state.runningApplication(process)) {
        pid.fail(fmt::format("the pid {} is already taken", process));
      }
      const std::size_t index = loadApplication(application, state, elements_);
      state.applications[index].isRunning = true;
      state.launchOrder.push_back(index);
    });
  }

  void loadSteps() {
    StepLoader loader(scene_.initialState, elements_);
    ifGiven("frontmost", [&](const JsonNode& node) {
      if (!node.isNull()) scene_.initialState.frontmost = loader.loadRunningProcess(node);
    });
    ifGiven("steps", [&](const JsonNode& node) { scene_.steps = loader.load(node); });
    const Seconds lastStep = scene_.steps.empty() ? Seconds(0) : scene_.steps.back().at;
    scene_.end = lastStep + timeAfterLastStep;
    ifGiven("end", [&](const JsonNode& node) {
      scene_.end = Seconds(node.number({0, latestEnd}));
      if (!scene_.steps.empty() && scene_.end <= lastStep) {
        node.fail("the scene ends before its last step happens");
      }
    });
  }

  const JsonNode& root_;
  Scene scene_;
  ElementLoader elements_{scene_.initialState};
};

}  // namespace

std::variant<Scene, SceneError> loadScene(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (stream && stream.peek() != std::ifstream::traits_type::eof()) text << stream.rdbuf();
  if (!stream.is_open() || stream.bad()) {
    return SceneError{fmt::format("{}: {}", file.string(), std::strerror(errno))};
  }
  return loadSceneText(text.str(), file.string());
}

std::variant<Scene, SceneError> loadSceneText(std::string_view text, std::string_view name) {
  try {
    const SceneJson document = parseSceneJson(text);
    return SceneLoader(JsonNode(document)).load();
  } catch (const SceneLoadFailure& failure) {
    return SceneError{fmt::format("{}{}", name, failure.what())};
  } catch (const std::exception& failure) {
    return SceneError{fmt::format("{}: {}", name, failure.what())};
  }
}

}  // namespace kestro
