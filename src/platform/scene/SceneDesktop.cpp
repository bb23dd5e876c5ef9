#include "platform/scene/SceneDesktop.h"

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
      runLoop_(clock_, scriptedEvents(), scene_.start + sinceStart(scene_.end)),
      accessibility_(state_, clock_, transcript_),
      windowServer_(state_, transcript_),
      workspace_(state_),
      defaults_(state_, transcript_),
      childProcesses_(state_, scene_.processes, transcript_),
      files_(state_),
      powerManagement_(state_),
      userNotifications_(state_, runLoop_, transcript_),
      timeEntryEditors_(transcript_),
      log_(transcript_),
      platform_{accessibility_,
                windowServer_,
                workspace_,
                defaults_,
                childProcesses_,
                files_,
                fileEvents_,
                powerManagement_,
                userNotifications_,
                timeEntryEditors_,
                clock_,
                runLoop_,
                log_,
                transcript_,
                scene_.bundle,
                "Version " + state_.system.version,
                chooseArguments(options.arguments, scene_.arguments),
                state_.system.languages,
                dataDirectory_.path(),
                state_.product} {}

std::vector<SceneRunLoop::ScriptedEvent> SceneDesktop::scriptedEvents() {
  std::vector<SceneRunLoop::ScriptedEvent> events;
  for (const SceneStep& step : scene_.steps) {
    events.push_back({scene_.start + sinceStart(step.at), [this, &step] { perform(step); }});
  }
  return events;
}

void SceneDesktop::perform(const SceneStep& step) {
  applyStep(state_, step.event);
  if (std::holds_alternative<RequestTerminationStep>(step.event)) runLoop_.requestTermination();
  if (const auto* delivery = std::get_if<FileEventsStep>(&step.event)) {
    fileEvents_.deliver(delivery->events);
  }
  if (const auto* response = std::get_if<NotificationResponseStep>(&step.event)) {
    userNotifications_.respond(*response);
  }
  if (const auto* editor = std::get_if<EditorStep>(&step.event)) timeEntryEditors_.end(*editor);
  if (const auto* restart = std::get_if<RestartStep>(&step.event)) {
    if (restart->arguments) platform_.arguments = *restart->arguments;
    runLoop_.requestRestart();
  }
}

bool SceneDesktop::beginNextProcessLife() {
  // Before anything else happens: what these call is gone.
  userNotifications_.beginNextLife();
  timeEntryEditors_.beginNextLife();
  if (!runLoop_.beginNextLife()) return false;
  accessibility_.beginNextLife();
  platform_.preferredLanguages = state_.system.languages;
  platform_.operatingSystemVersion = "Version " + state_.system.version;
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
