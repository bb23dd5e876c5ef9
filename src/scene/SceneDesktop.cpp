#include "scene/SceneDesktop.h"

#include <charconv>
#include <utility>

namespace kestro {
namespace {

Date::duration sinceStart(Seconds time) {
  return std::chrono::round<std::chrono::microseconds>(time);
}

// The command line's arguments win over the scene's.
const std::vector<std::string>& chooseArguments(const std::vector<std::string>& commandLine,
                                                const std::vector<std::string>& scripted) {
  return commandLine.empty() ? scripted : commandLine;
}

// "15" of "15.3.1"; 0 without a number.
int majorVersion(const std::string& version) {
  int major = 0;
  std::from_chars(version.data(), version.data() + version.size(), major);
  return major;
}

template <class... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

RelaunchCommands relaunchCommands(const MainBundle& bundle) {
  return {"/bin/sh", "/usr/bin/open", bundle.path};
}

// That of the running application with the helper's own identifier, the first of several.
std::int64_t ownProcessIdentifier(const SceneState& state, const MainBundle& bundle) {
  constexpr std::int64_t unlisted = 501;
  for (const std::size_t index : state.launchOrder) {
    const SceneApplication& application = state.applications[index];
    const auto& description = application.description;
    if (application.isRunning && description.bundleIdentifier == bundle.identifier) {
      return description.processIdentifier;
    }
  }
  return unlisted;
}

RunningApplication helperItself(const SceneState& state, const MainBundle& bundle) {
  RunningApplication helper;
  helper.processIdentifier = static_cast<ProcessIdentifier>(ownProcessIdentifier(state, bundle));
  helper.bundleIdentifier = bundle.identifier;
  helper.executablePath = bundle.executablePath;
  helper.bundlePath = bundle.path;
  return helper;
}

SceneDesktopResult makeDesktop(std::variant<Scene, SceneError> loaded, DesktopOptions options,
                               std::optional<double> timesRealTime) {
  if (auto* error = std::get_if<SceneError>(&loaded)) return std::move(*error);
  try {
    return makeSceneDesktop(std::get<Scene>(std::move(loaded)), std::move(options), timesRealTime);
  } catch (const std::filesystem::filesystem_error& failure) {
    return SceneError{failure.what()};
  }
}

}  // namespace

SceneDesktop::SceneDesktop(Scene scene, DesktopOptions options, std::optional<double> timesRealTime)
    : scene_(std::move(scene)),
      state_(scene_.initialState),
      clock_(scene_.start, timesRealTime),
      transcript_(clock_, scene_.start, std::move(options.transcriptWriter)),
      dataDirectory_(options.dataDirectory),
      log_(transcript_, options.standardError),
      runLoop_(clock_, log_, scriptedEvents(), scene_.start + sinceStart(scene_.end)),
      accessibility_(state_, clock_, transcript_),
      windowServer_(state_, transcript_),
      workspace_(state_, helperItself(state_, scene_.bundle), transcript_),
      defaults_(state_, transcript_),
      childProcesses_(state_, scene_.processes, transcript_),
      files_(state_, transcript_),
      powerManagement_(state_),
      alerts_(scene_.steps, scene_.start, clock_, transcript_),
      statusBar_(transcript_),
      controlService_(transcript_),
      loginItems_(state_),
      userNotifications_(state_, runLoop_, transcript_),
      timeEntryEditors_(transcript_),
      standardOutput_(options.standardOutput, transcript_),
      platform_{.accessibility = accessibility_,
                .windowServer = windowServer_,
                .workspace = workspace_,
                .defaults = defaults_,
                .childProcesses = childProcesses_,
                .files = files_,
                .fileEvents = fileEvents_,
                .powerManagement = powerManagement_,
                .alerts = alerts_,
                .statusBar = statusBar_,
                .globalShortcuts = globalShortcuts_,
                .appleEvents = appleEvents_,
                .controlService = controlService_,
                .loginItems = loginItems_,
                .notificationCenter = notificationCenter_,
                .userNotifications = userNotifications_,
                .timeEntryEditors = timeEntryEditors_,
                .standardOutput = standardOutput_,
                .clock = clock_,
                .runLoop = runLoop_,
                .log = log_,
                .transcript = transcript_,
                .mainBundle = scene_.bundle,
                .relaunchCommands = relaunchCommands(scene_.bundle),
                .processIdentifier = ownProcessIdentifier(state_, scene_.bundle),
                .operatingSystemVersion = "Version " + state_.system.version,
                .operatingSystemMajorVersion = majorVersion(state_.system.version),
                .timeZone = scene_.timeZone,
                .random = [random = scene_.random] { return random; },
                .arguments = chooseArguments(options.arguments, scene_.arguments),
                .preferredLanguages = state_.system.languages,
                .dataDirectory = dataDirectory_.path(),
                .productConditions = state_.product} {}

std::vector<SceneRunLoop::ScriptedEvent> SceneDesktop::scriptedEvents() {
  std::vector<SceneRunLoop::ScriptedEvent> events;
  for (const SceneStep& step : scene_.steps) {
    events.push_back({scene_.start + sinceStart(step.at), [this, &step] { perform(step); }});
  }
  return events;
}

void SceneDesktop::perform(const SceneStep& step) {
  applyStep(state_, step.event);
  std::visit(
      Overloaded{
          [&](const FileEventsStep& delivery) { fileEvents_.deliver(delivery.events); },
          [&](const NotificationResponseStep& response) { userNotifications_.respond(response); },
          [&](const EditorStep& end) { timeEntryEditors_.end(end); },
          [&](const OpenMenuStep& open) { statusBar_.openMenu(open.isOptionKeyHeld); },
          [&](const CloseMenuStep&) { statusBar_.closeMenu(); },
          [&](const ClickStep& click) { statusBar_.click(click.action, click.tag); },
          [&](const ShortcutStep& shortcut) { globalShortcuts_.press(shortcut.keys); },
          [&](const ScriptingCommandStep& command) {
            appleEvents_.send(command.implementingClass, command.evaluatedArguments);
          },
          [&](const ControlStep& control) {
            control.isStart ? controlService_.startTimer(control.title, control.project)
                            : controlService_.stopTimer();
          },
          [&](const OpenURLStep& open) { appleEvents_.openURL(open.address); },
          [&](const AppearanceChangedStep&) { statusBar_.changeAppearance(); },
          [&](const PostStep& post) { notificationCenter_.post(post.name, post.userInfo); },
          [&](const RequestTerminationStep&) { runLoop_.requestTermination(); },
          [&](const RestartStep& again) { restart(again); },
          [](const auto&) {},  // the desktop alone, or an alert's answer, which waits for it
      },
      step.event);
}

void SceneDesktop::restart(const RestartStep& step) {
  if (step.arguments) platform_.arguments = *step.arguments;
  runLoop_.requestRestart();
}

bool SceneDesktop::beginNextProcessLife() {
  // Before anything else happens: what these call is gone.
  userNotifications_.beginNextLife();
  timeEntryEditors_.beginNextLife();
  appleEvents_.beginNextLife();
  controlService_.beginNextLife();
  if (!runLoop_.beginNextLife()) return false;
  accessibility_.beginNextLife();
  platform_.preferredLanguages = state_.system.languages;
  platform_.operatingSystemVersion = "Version " + state_.system.version;
  platform_.operatingSystemMajorVersion = majorVersion(state_.system.version);
  return true;
}

std::optional<UIElement> SceneDesktop::element(std::string_view id) const {
  const auto found = scene_.elementsById.find(id);
  if (found == scene_.elementsById.end()) return std::nullopt;
  return state_.elements[found->second].handle;
}

std::unique_ptr<SceneDesktop> makeSceneDesktop(Scene scene, DesktopOptions options,
                                               std::optional<double> timesRealTime) {
  return std::make_unique<SceneDesktop>(std::move(scene), std::move(options), timesRealTime);
}

SceneDesktopResult makeSceneDesktop(const std::filesystem::path& file, DesktopOptions options,
                                    std::optional<double> timesRealTime) {
  return makeDesktop(loadScene(file), std::move(options), timesRealTime);
}

SceneDesktopResult makeSceneDesktopFromText(std::string_view text, std::string_view name,
                                            DesktopOptions options,
                                            std::optional<double> timesRealTime) {
  return makeDesktop(loadSceneText(text, name), std::move(options), timesRealTime);
}

}  // namespace kestro
