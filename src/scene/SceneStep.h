// What happens on a scripted desktop, and when. Plain values.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/FileEvents.h"
#include "platform/Menu.h"
#include "scene/SceneState.h"

namespace kestro {

// Keys with their new values; a key without one is removed.
using PropertyListChanges = std::vector<std::pair<std::string, std::optional<PropertyList>>>;

void applyChanges(PropertyListDictionary& dictionary, const PropertyListChanges& changes);

struct SetStep {
  ElementIndex element;
  SceneElementContents changes;
};
struct FrontmostStep {
  std::optional<ProcessIdentifier> process;
};
struct WindowsStep {
  std::vector<WindowEntry> windows;
};
struct LaunchStep {
  std::size_t application;
};
struct QuitStep {
  ProcessIdentifier process;
};
struct SystemStep {
  std::optional<std::string> version;
  std::optional<std::vector<std::string>> languages;
  std::optional<std::vector<Rect>> screens;
  std::optional<bool> accessibilityTrusted;
  std::optional<bool> screenCaptureAccess;
  std::optional<std::uint64_t> requestBudget;
};
struct ProductStep {
  PropertyListChanges changes;
};
struct PreferencesStep {
  ScenePreferences SceneState::*preferences;
  PropertyListChanges changes;
};
// Domain by domain; one without changes can no longer be opened.
struct SuitesStep {
  std::vector<std::pair<std::string, std::optional<PropertyListChanges>>> suites;
};
struct WriteFileStep {
  std::map<std::string, SceneFile, std::less<>> files;
};
struct RemoveFileStep {
  std::string path;
};
struct AssertionsStep {
  SceneAssertions assertions;
};
// One delivery of the file-system event stream.
struct FileEventsStep {
  std::vector<FileEvent> events;
};
struct NotificationResponseStep {
  std::string action;  // an action's identifier, "default" for a click, "dismiss"
  // Instead of the newest notification's.
  std::optional<std::string> category;
  std::optional<PropertyListDictionary> userInfo;
};
// Fields that the user changed before saving; an absent project name inside: none any more.
struct EditorStep {
  bool isSaved = false;
  std::optional<std::string> title;
  std::optional<Date> start;
  std::optional<Date> end;
  std::optional<std::optional<std::string>> project;
};
struct OpenMenuStep {
  bool isOptionKeyHeld = false;
};
struct CloseMenuStep {};
struct ClickStep {
  std::string action;
  std::optional<std::int64_t> tag;  // absent: the action's first row
};
struct ShortcutStep {
  KeyEquivalent keys;
};
// Absent fields: the alert's last button, and its box as it is.
struct AnswerAlertStep {
  std::optional<std::string> button;
  std::optional<bool> isSuppressed;
};
struct ScriptingCommandStep {
  std::string implementingClass;
  PropertyListDictionary evaluatedArguments;
};
// Of another program: starts the timer, or stops it.
struct ControlStep {
  bool isStart = false;
  std::string title;
  std::string project;
};
struct OpenURLStep {
  std::string address;
};
struct AppearanceChangedStep {};
// A notification inside the process or of the session.
struct PostStep {
  std::string name;
  PropertyListDictionary userInfo;
};
struct RequestTerminationStep {};
struct RestartStep {
  std::optional<std::vector<std::string>> arguments;  // absent: as before
};

using SceneEvent =
    std::variant<SetStep, FrontmostStep, WindowsStep, LaunchStep, QuitStep, SystemStep, ProductStep,
                 PreferencesStep, SuitesStep, WriteFileStep, RemoveFileStep, AssertionsStep,
                 FileEventsStep, NotificationResponseStep, EditorStep, OpenMenuStep, CloseMenuStep,
                 ClickStep, ShortcutStep, AnswerAlertStep, ScriptingCommandStep, ControlStep,
                 OpenURLStep, AppearanceChangedStep, PostStep, RequestTerminationStep, RestartStep>;

struct SceneStep {
  Seconds at{0};  // after the start of the scene
  SceneEvent event;
};

void applySystemChanges(SceneSystem& system, const SystemStep& changes);

// What the step changes on the desktop itself: nothing for those that concern the helper's process.
void applyStep(SceneState& state, const SceneEvent& event);

}  // namespace kestro
