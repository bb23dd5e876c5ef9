// A scripted desktop (docs/scenes.md): a scene's elements, windows and preferences behind the
// platform interfaces, and its steps in virtual time. Main thread only.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>

#include "platform/Desktop.h"
#include "platform/NotificationCenter.h"
#include "scene/Scene.h"
#include "scene/SceneAccessibility.h"
#include "scene/SceneAlerts.h"
#include "scene/SceneAppleEvents.h"
#include "scene/SceneChildProcesses.h"
#include "scene/SceneClock.h"
#include "scene/SceneControlService.h"
#include "scene/SceneDataDirectory.h"
#include "scene/SceneFileEvents.h"
#include "scene/SceneFiles.h"
#include "scene/SceneGlobalShortcuts.h"
#include "scene/SceneLoginItems.h"
#include "scene/ScenePowerManagement.h"
#include "scene/SceneRunLoop.h"
#include "scene/SceneStatusBar.h"
#include "scene/SceneSystemLog.h"
#include "scene/SceneTimeEntryEditors.h"
#include "scene/SceneUserDefaults.h"
#include "scene/SceneUserNotifications.h"
#include "scene/SceneWindowServer.h"
#include "scene/SceneWorkspace.h"
#include "transcript/PrintedLines.h"
#include "transcript/TimedTranscript.h"

namespace kestro {

class SceneDesktop final : public Desktop {
 public:
  // `timesRealTime`: virtual seconds in a real one, greater than zero; absent: as fast as the
  // machine can. Throws std::filesystem::filesystem_error when the data directory cannot be made.
  SceneDesktop(Scene scene, DesktopOptions options, std::optional<double> timesRealTime);
  SceneDesktop(const SceneDesktop&) = delete;
  SceneDesktop& operator=(const SceneDesktop&) = delete;

  Platform& platform() override { return platform_; }
  bool beginNextProcessLife() override;

  const Scene& scene() const { return scene_; }
  // The element that has this id at the start of the scene.
  std::optional<UIElement> element(std::string_view id) const;

 private:
  std::vector<SceneRunLoop::ScriptedEvent> scriptedEvents();
  void perform(const SceneStep& step);
  void restart(const RestartStep& step);

  Scene scene_;
  SceneState state_;
  SceneClock clock_;
  TimedTranscript transcript_;
  SceneDataDirectory dataDirectory_;
  SceneSystemLog log_;
  SceneRunLoop runLoop_;
  SceneAccessibility accessibility_;
  SceneWindowServer windowServer_;
  SceneWorkspace workspace_;
  SceneUserDefaultsDatabase defaults_;
  SceneChildProcesses childProcesses_;
  SceneFiles files_;
  SceneFileEvents fileEvents_;
  ScenePowerManagement powerManagement_;
  SceneAlerts alerts_;
  SceneStatusBar statusBar_;
  SceneGlobalShortcuts globalShortcuts_;
  SceneAppleEvents appleEvents_;
  SceneControlService controlService_;
  SceneLoginItems loginItems_;
  NotificationCenter notificationCenter_;
  SceneUserNotifications userNotifications_;
  SceneTimeEntryEditors timeEntryEditors_;
  PrintedLines standardOutput_;
  Platform platform_;
};

// As the constructor.
std::unique_ptr<SceneDesktop> makeSceneDesktop(Scene scene, DesktopOptions options,
                                               std::optional<double> timesRealTime = std::nullopt);

// The desktop of a file or text, or why there is none; nothing is thrown. `name` stands for the
// file in messages.
using SceneDesktopResult = std::variant<std::unique_ptr<Desktop>, SceneError>;
SceneDesktopResult makeSceneDesktop(const std::filesystem::path& file, DesktopOptions options,
                                    std::optional<double> timesRealTime = std::nullopt);
SceneDesktopResult makeSceneDesktopFromText(std::string_view text, std::string_view name,
                                            DesktopOptions options,
                                            std::optional<double> timesRealTime = std::nullopt);

}  // namespace kestro
