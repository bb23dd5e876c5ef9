// A scripted desktop as its file describes it: loaded, checked, not yet running. docs/scenes.md
// documents the format. A plain value.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "foundation/TimeZone.h"
#include "platform/Platform.h"
#include "scene/SceneState.h"
#include "scene/SceneStep.h"

namespace kestro {

// What becomes of a program that the helper runs. Without an entry: what the program does.
struct SceneProgram {
  std::optional<std::string> failure;  // why it cannot be started; absent: it runs and does nothing
};

struct Scene {
  std::string description;
  std::optional<std::vector<std::string>>
      about;  // transcript kinds of the expectation; absent: all
  Date start;
  TimeZone timeZone = TimeZone::utc();
  Seconds end{0};  // after start
  std::vector<std::string> arguments;
  std::int64_t random = 0;  // what the platform's random numbers are
  MainBundle bundle;
  std::map<std::string, SceneProgram, std::less<>> processes;
  SceneState initialState;
  std::vector<SceneStep> steps;                                   // in order of time
  std::map<std::string, ElementIndex, std::less<>> elementsById;  // the elements of the start

  // Whether the expectation of this scene holds events of this kind.
  bool isAbout(std::string_view kind) const;
};

// Why a scene cannot be read: "FILE:LINE:COLUMN: reason" or "FILE: /json/pointer: reason".
struct SceneError {
  std::string message;
};

std::variant<Scene, SceneError> loadScene(const std::filesystem::path& file);
// `name` stands for the file in messages.
std::variant<Scene, SceneError> loadSceneText(std::string_view text, std::string_view name);

}  // namespace kestro
