// Steps that concern the helper itself: what people, other programs and the session ask of it.
#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "platform/ModifierNames.h"
#include "platform/NotificationCenter.h"
#include "scene/PropertyListLoader.h"
#include "scene/StepLoader.h"

namespace kestro {
namespace {

void expectTrue(const JsonNode& node) {
  if (!node.boolean()) node.fail("expected true, found false");
}

SceneEvent postOf(std::string_view name, const JsonNode& node) {
  expectTrue(node);
  return PostStep{std::string(name), {}};
}

KeyEquivalent loadKeys(const JsonNode& node) {
  node.expectKeys({"key", "modifiers"});
  KeyEquivalent keys{node.member("key").text(), {}};
  if (const auto modifiers = node.find("modifiers")) {
    modifiers->forEachItem([&](const JsonNode& item) {
      const auto modifier = modifierNamed(item.text());
      if (!modifier) item.fail(fmt::format("unknown modifier '{}'", item.text()));
      keys.modifiers.push_back(*modifier);
    });
  }
  std::ranges::sort(keys.modifiers);
  return keys;
}

}  // namespace

SceneEvent StepLoader::loadFileEvents(const JsonNode& node) {
  constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
  FileEventsStep step;
  node.forEachItem([&](const JsonNode& item) {
    item.expectKeys({"path", "flags", "id"});
    FileEvent event{item.member("path").text(), 0, 0};
    if (const auto flags = item.find("flags")) {
      event.flags =
          static_cast<std::uint32_t>(flags->integer(0, std::numeric_limits<std::uint32_t>::max()));
    }
    if (const auto identifier = item.find("id")) {
      event.identifier = static_cast<std::uint64_t>(identifier->integer(0, greatest));
    }
    step.events.push_back(std::move(event));
  });
  return step;
}

SceneEvent StepLoader::loadNotificationResponse(const JsonNode& node) {
  node.expectKeys({"action", "category", "userInfo"});
  NotificationResponseStep step{node.member("action").text(), std::nullopt, std::nullopt};
  if (const auto category = node.find("category")) step.category = category->text();
  if (const auto userInfo = node.find("userInfo")) step.userInfo = loadDictionary(*userInfo);
  return step;
}

SceneEvent StepLoader::loadEditor(const JsonNode& node) {
  EditorStep step;
  if (node.isText()) {
    if (node.text() != "save" && node.text() != "cancel") {
      node.failExpecting("'save', 'cancel' or {\"save\": {…}}");
    }
    step.isSaved = node.text() == "save";
    return step;
  }
  const JsonNode fields =
      node.expectKeys({"save"}).member("save").expectKeys({"title", "start", "end", "project"});
  step.isSaved = true;
  if (const auto title = fields.find("title")) step.title = title->text();
  if (const auto start = fields.find("start")) step.start = loadDate(*start);
  if (const auto end = fields.find("end")) step.end = loadDate(*end);
  if (const auto project = fields.find("project")) {
    step.project = project->isNull() ? std::nullopt : std::optional(project->text());
  }
  return step;
}

SceneEvent StepLoader::loadRequestTermination(const JsonNode& node) {
  expectTrue(node);
  return RequestTerminationStep{};
}

SceneEvent StepLoader::loadRestart(const JsonNode& node) {
  if (!node.isObject()) {
    expectTrue(node);
    return RestartStep{};
  }
  const auto arguments = node.expectKeys({"arguments"}).find("arguments");
  return RestartStep{arguments ? std::optional(arguments->texts()) : std::nullopt};
}

SceneEvent StepLoader::loadOpenMenu(const JsonNode& node) {
  if (!node.isObject()) {
    expectTrue(node);
    return OpenMenuStep{};
  }
  const auto option = node.expectKeys({"option"}).find("option");
  return OpenMenuStep{option && option->boolean()};
}

SceneEvent StepLoader::loadCloseMenu(const JsonNode& node) {
  expectTrue(node);
  return CloseMenuStep{};
}

SceneEvent StepLoader::loadClick(const JsonNode& node) {
  node.expectKeys({"action", "tag"});
  const auto tag = node.find("tag");
  return ClickStep{node.member("action").text(),
                   tag ? std::optional(tag->integer()) : std::nullopt};
}

SceneEvent StepLoader::loadShortcut(const JsonNode& node) {
  return ShortcutStep{loadKeys(node)};
}

SceneEvent StepLoader::loadAnswerAlert(const JsonNode& node) {
  node.expectKeys({"button", "suppress"});
  AnswerAlertStep step;
  if (const auto button = node.find("button")) step.button = button->text();
  if (const auto suppress = node.find("suppress")) step.isSuppressed = suppress->boolean();
  return step;
}

SceneEvent StepLoader::loadPauseCommand(const JsonNode& node) {
  ScriptingCommandStep step{"KSPauseTrackingCommand", {}};
  if (node.isObject()) {
    step.evaluatedArguments = loadDictionary(node.expectKeys({"fors"}));
  } else {
    expectTrue(node);
  }
  return step;
}

SceneEvent StepLoader::loadResumeCommand(const JsonNode& node) {
  expectTrue(node);
  return ScriptingCommandStep{"KSResumeTrackingCommand", {}};
}

SceneEvent StepLoader::loadControl(const JsonNode& node) {
  if (node.isText()) {
    if (node.text() != "stopTimer") node.failExpecting("'stopTimer' or {\"startTimer\": {…}}");
    return ControlStep{};
  }
  const JsonNode fields =
      node.expectKeys({"startTimer"}).member("startTimer").expectKeys({"title", "project"});
  ControlStep step{true, "", ""};
  if (const auto title = fields.find("title")) step.title = title->text();
  if (const auto project = fields.find("project")) step.project = project->text();
  return step;
}

SceneEvent StepLoader::loadOpenURL(const JsonNode& node) {
  return OpenURLStep{node.text()};
}

SceneEvent StepLoader::loadAppearanceChanged(const JsonNode& node) {
  expectTrue(node);
  return AppearanceChangedStep{};
}

SceneEvent StepLoader::loadRelaunch(const JsonNode& node) {
  node.expectKeys({"delay", "attributes"});
  PropertyListDictionary userInfo{{"delay", node.member("delay").number()}};
  const auto attributes = node.find("attributes");
  userInfo.set("attributes", attributes ? loadDictionary(*attributes) : PropertyListDictionary());
  return PostStep{std::string(productNotification::relaunchWanted), std::move(userInfo)};
}

SceneEvent StepLoader::loadWatcher(const JsonNode& node) {
  node.expectKeys({"excludedPaths", "ignoreEventsFromSubDirs", "stop"});
  PropertyListDictionary userInfo;
  if (const auto paths = node.find("excludedPaths")) userInfo.set("excludedPaths", paths->texts());
  for (const char* key : {"ignoreEventsFromSubDirs", "stop"}) {
    if (const auto flag = node.find(key)) userInfo.set(key, flag->boolean());
  }
  return PostStep{std::string(helperNotification::watcherRequest), std::move(userInfo)};
}

SceneEvent StepLoader::loadPost(const JsonNode& node) {
  return PostStep{node.expectKeys({"name"}).member("name").text(), {}};
}

SceneEvent StepLoader::loadThemeChanged(const JsonNode& node) {
  return postOf(sessionNotification::interfaceThemeChanged, node);
}

SceneEvent StepLoader::loadSpaceChanged(const JsonNode& node) {
  return postOf(sessionNotification::activeSpaceDidChange, node);
}

SceneEvent StepLoader::loadFlushFinished(const JsonNode& node) {
  return postOf(productNotification::flushAndSyncFinished, node);
}

SceneEvent StepLoader::loadSync(const JsonNode& node) {
  return postOf(productNotification::syncRequested, node);
}

}  // namespace kestro
