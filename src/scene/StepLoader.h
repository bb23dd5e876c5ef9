// The steps of a scene. Private to this folder.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "scene/ElementLoader.h"
#include "scene/JsonNode.h"
#include "scene/SceneState.h"
#include "scene/SceneStep.h"

namespace kestro {

// Domain by domain, with the changes of each.
SuitesStep loadSuites(const JsonNode& node);

class StepLoader {
 public:
  // The applications of the start must be in the state.
  StepLoader(SceneState& state, ElementLoader& elements);

  // All steps in order of time. Which processes run when is followed along, so that a step cannot
  // name one that does not.
  std::vector<SceneStep> load(const JsonNode& node);

  // Ends loading when no application with this process identifier runs at the point reached.
  ProcessIdentifier loadRunningProcess(const JsonNode& node) const;

 private:
  using Verb = SceneEvent (StepLoader::*)(const JsonNode&);
  struct NamedVerb {
    std::string_view name;
    Verb load;
  };
  static const std::vector<NamedVerb>& verbs();

  SceneEvent loadEvent(const JsonNode& step);
  Verb findVerb(std::string_view name, const JsonNode& node) const;

  SceneEvent loadSet(const JsonNode& node);
  SceneEvent loadFrontmost(const JsonNode& node);
  SceneEvent loadWindowList(const JsonNode& node);
  SceneEvent loadLaunch(const JsonNode& node);
  SceneEvent loadQuit(const JsonNode& node);
  SceneEvent loadSystemChange(const JsonNode& node);
  SceneEvent loadProduct(const JsonNode& node);
  SceneEvent loadDefaults(const JsonNode& node);
  SceneEvent loadHelperPreferences(const JsonNode& node);
  SceneEvent loadMainAppPreferences(const JsonNode& node);
  SceneEvent loadSuitesChange(const JsonNode& node);
  SceneEvent loadWriteFile(const JsonNode& node);
  SceneEvent loadRemoveFile(const JsonNode& node);
  SceneEvent loadAssertionLists(const JsonNode& node);
  // StepLoader+Helper.cpp: what people and programs ask of the helper.
  SceneEvent loadFileEvents(const JsonNode& node);
  SceneEvent loadNotificationResponse(const JsonNode& node);
  SceneEvent loadEditor(const JsonNode& node);
  SceneEvent loadOpenMenu(const JsonNode& node);
  SceneEvent loadCloseMenu(const JsonNode& node);
  SceneEvent loadClick(const JsonNode& node);
  SceneEvent loadShortcut(const JsonNode& node);
  SceneEvent loadAnswerAlert(const JsonNode& node);
  SceneEvent loadPauseCommand(const JsonNode& node);
  SceneEvent loadResumeCommand(const JsonNode& node);
  SceneEvent loadControl(const JsonNode& node);
  SceneEvent loadOpenURL(const JsonNode& node);
  SceneEvent loadAppearanceChanged(const JsonNode& node);
  SceneEvent loadRelaunch(const JsonNode& node);
  SceneEvent loadWatcher(const JsonNode& node);
  SceneEvent loadPost(const JsonNode& node);
  SceneEvent loadThemeChanged(const JsonNode& node);
  SceneEvent loadSpaceChanged(const JsonNode& node);
  SceneEvent loadFlushFinished(const JsonNode& node);
  SceneEvent loadSync(const JsonNode& node);
  SceneEvent loadRequestTermination(const JsonNode& node);
  SceneEvent loadRestart(const JsonNode& node);

  ElementIndex findElement(const JsonNode& node) const;
  ElementIndex findApplicationElement(ProcessIdentifier process, const JsonNode& node) const;

  SceneState& state_;
  ElementLoader& elements_;
  std::map<ProcessIdentifier, std::size_t> running_;  // applications by process identifier
};

}  // namespace kestro
