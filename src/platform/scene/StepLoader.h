// The steps of a scene. Private to this folder.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/scene/ElementLoader.h"
#include "platform/scene/JsonNode.h"
#include "platform/scene/SceneState.h"
#include "platform/scene/SceneStep.h"

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
  SceneEvent loadFileEvents(const JsonNode& node);
  SceneEvent loadNotificationResponse(const JsonNode& node);
  SceneEvent loadEditor(const JsonNode& node);
  SceneEvent loadRequestTermination(const JsonNode& node);
  SceneEvent loadRestart(const JsonNode& node);

  ElementIndex findElement(const JsonNode& node) const;
  ElementIndex findApplicationElement(ProcessIdentifier process, const JsonNode& node) const;

  SceneState& state_;
  ElementLoader& elements_;
  std::map<ProcessIdentifier, std::size_t> running_;  // applications by process identifier
};

}  // namespace kestro
