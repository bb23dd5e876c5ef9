#include "scene/StepLoader.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "scene/DesktopLoader.h"
#include "scene/PropertyListLoader.h"

namespace kestro {
namespace {

constexpr double latestTime = 1e8;

struct TimedStep {
  double at;
  std::size_t index;  // in the list of steps
};

double loadTime(const JsonNode& step) {
  const JsonNode at = step.member("at");
  const double time = at.number();
  if (time < 0) at.fail("a step cannot be before the start");
  return at.number({0, latestTime});
}

std::vector<TimedStep> inOrderOfTime(const JsonNode& node) {
  std::vector<TimedStep> steps;
  node.forEachItem([&](const JsonNode& step) {
    steps.push_back({loadTime(step.expectObject()), steps.size()});
  });
  std::ranges::stable_sort(steps, {}, &TimedStep::at);
  return steps;
}

// The process identifier in the name that transcripts give an application element without an id.
std::optional<ProcessIdentifier> processOfName(std::string_view name) {
  constexpr std::string_view prefix = "application ";
  if (!name.starts_with(prefix)) return std::nullopt;
  name.remove_prefix(prefix.size());
  ProcessIdentifier process = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
  if (error != std::errc{} || end != name.data() + name.size()) return std::nullopt;
  return process;
}

}  // namespace

SuitesStep loadSuites(const JsonNode& node) {
  SuitesStep step;
  node.forEachMember([&](const std::string& name, const JsonNode& suite) {
    step.suites.emplace_back(name,
                             suite.isNull() ? std::nullopt : std::optional(loadChanges(suite)));
  });
  return step;
}

StepLoader::StepLoader(SceneState& state, ElementLoader& elements)
    : state_(state), elements_(elements) {
  for (const std::size_t index : state.launchOrder) {
    running_.emplace(state.applications[index].description.processIdentifier, index);
  }
}

std::vector<SceneStep> StepLoader::load(const JsonNode& node) {
  std::vector<SceneStep> steps;
  for (const TimedStep& step : inOrderOfTime(node)) {
    steps.push_back({Seconds(step.at), loadEvent(node.item(step.index))});
  }
  return steps;
}

ProcessIdentifier StepLoader::loadRunningProcess(const JsonNode& node) const {
  const ProcessIdentifier process = loadProcessIdentifier(node);
  if (!running_.contains(process)) {
    node.fail(fmt::format("no application with the pid {} is running", process));
  }
  return process;
}

const std::vector<StepLoader::NamedVerb>& StepLoader::verbs() {
  static const std::vector<NamedVerb> table{
      {"set", &StepLoader::loadSet},
      {"frontmost", &StepLoader::loadFrontmost},
      {"windows", &StepLoader::loadWindowList},
      {"launch", &StepLoader::loadLaunch},
      {"quit", &StepLoader::loadQuit},
      {"system", &StepLoader::loadSystemChange},
      {"product", &StepLoader::loadProduct},
      {"defaults", &StepLoader::loadDefaults},
      {"suites", &StepLoader::loadSuitesChange},
      {"helperPreferences", &StepLoader::loadHelperPreferences},
      {"mainAppPreferences", &StepLoader::loadMainAppPreferences},
      {"writeFile", &StepLoader::loadWriteFile},
      {"removeFile", &StepLoader::loadRemoveFile},
      {"assertions", &StepLoader::loadAssertionLists},
      {"fileEvents", &StepLoader::loadFileEvents},
      {"notificationResponse", &StepLoader::loadNotificationResponse},
      {"editor", &StepLoader::loadEditor},
      {"openMenu", &StepLoader::loadOpenMenu},
      {"closeMenu", &StepLoader::loadCloseMenu},
      {"click", &StepLoader::loadClick},
      {"shortcut", &StepLoader::loadShortcut},
      {"answerAlert", &StepLoader::loadAnswerAlert},
      {"pauseCommand", &StepLoader::loadPauseCommand},
      {"resumeCommand", &StepLoader::loadResumeCommand},
      {"control", &StepLoader::loadControl},
      {"openURL", &StepLoader::loadOpenURL},
      {"appearanceChanged", &StepLoader::loadAppearanceChanged},
      {"relaunch", &StepLoader::loadRelaunch},
      {"watcher", &StepLoader::loadWatcher},
      {"post", &StepLoader::loadPost},
      {"themeChanged", &StepLoader::loadThemeChanged},
      {"spaceChanged", &StepLoader::loadSpaceChanged},
      {"flushFinished", &StepLoader::loadFlushFinished},
      {"sync", &StepLoader::loadSync},
      {"requestTermination", &StepLoader::loadRequestTermination},
      {"restart", &StepLoader::loadRestart},
  };
  return table;
}

SceneEvent StepLoader::loadEvent(const JsonNode& step) {
  std::vector<std::string> names;
  step.forEachMember([&](const std::string& key, const JsonNode&) {
    if (key != "at") names.push_back(key);
  });
  if (names.empty()) step.fail("a step needs a verb beside 'at'");
  const JsonNode value = step.member(names.front());
  const Verb verb = findVerb(names.front(), value);
  if (names.size() > 1) {
    step.fail(fmt::format("a step has one verb, found '{}' and '{}'", names[0], names[1]));
  }
  elements_.beginScope();
  return (this->*verb)(value);
}

StepLoader::Verb StepLoader::findVerb(std::string_view name, const JsonNode& node) const {
  const auto found = std::ranges::find(verbs(), name, &NamedVerb::name);
  if (found != verbs().end()) return found->load;
  node.fail(fmt::format("unknown step '{}'", name));
}

SceneEvent StepLoader::loadSet(const JsonNode& node) {
  node.expectKeys({"element", "attributes"});
  const JsonNode attributes = node.member("attributes");
  elements_.declareElements(attributes);
  const ElementIndex element = findElement(node.member("element"));
  return SetStep{element, elements_.loadChanges(attributes, element)};
}

SceneEvent StepLoader::loadFrontmost(const JsonNode& node) {
  if (node.isNull()) return FrontmostStep{};
  return FrontmostStep{loadRunningProcess(node)};
}

SceneEvent StepLoader::loadWindowList(const JsonNode& node) {
  return WindowsStep{loadWindows(node)};
}

SceneEvent StepLoader::loadLaunch(const JsonNode& node) {
  elements_.declareElements(node);
  const std::size_t index = loadApplication(node, state_, elements_);
  const ProcessIdentifier process = state_.applications[index].description.processIdentifier;
  if (!running_.emplace(process, index).second) {
    node.member("pid").fail(fmt::format("the pid {} is already taken", process));
  }
  return LaunchStep{index};
}

SceneEvent StepLoader::loadQuit(const JsonNode& node) {
  const ProcessIdentifier process = loadRunningProcess(node);
  running_.erase(process);
  return QuitStep{process};
}

SceneEvent StepLoader::loadSystemChange(const JsonNode& node) {
  return loadSystem(node);
}

SceneEvent StepLoader::loadProduct(const JsonNode& node) {
  return ProductStep{loadProductChanges(node)};
}

SceneEvent StepLoader::loadDefaults(const JsonNode& node) {
  return PreferencesStep{&SceneState::standard, loadChanges(node)};
}

SceneEvent StepLoader::loadHelperPreferences(const JsonNode& node) {
  return PreferencesStep{&SceneState::helperPreferences, loadChanges(node)};
}

SceneEvent StepLoader::loadMainAppPreferences(const JsonNode& node) {
  return PreferencesStep{&SceneState::mainAppPreferences, loadChanges(node)};
}

SceneEvent StepLoader::loadSuitesChange(const JsonNode& node) {
  return loadSuites(node);
}

SceneEvent StepLoader::loadWriteFile(const JsonNode& node) {
  return WriteFileStep{loadFiles(node)};
}

SceneEvent StepLoader::loadRemoveFile(const JsonNode& node) {
  return RemoveFileStep{node.text()};
}

SceneEvent StepLoader::loadAssertionLists(const JsonNode& node) {
  return AssertionsStep{loadAssertions(node)};
}

ElementIndex StepLoader::findElement(const JsonNode& node) const {
  if (node.isNumber()) return findApplicationElement(loadRunningProcess(node), node);
  const auto process = processOfName(node.text());
  if (process && running_.contains(*process)) return findApplicationElement(*process, node);
  return elements_.find(node);
}

ElementIndex StepLoader::findApplicationElement(ProcessIdentifier process,
                                                const JsonNode& node) const {
  const auto element = state_.applications[running_.at(process)].element;
  if (!element) node.fail(fmt::format("the application with the pid {} has no element", process));
  return *element;
}

}  // namespace kestro
