// A scripted desktop at one moment: what steps and the helper itself change. A plain value.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "foundation/PropertyList.h"
#include "platform/WindowServer.h"
#include "platform/Workspace.h"
#include "scene/SceneElement.h"

namespace kestro {

struct SceneApplication {
  RunningApplication description;
  std::optional<ElementIndex> element;  // absent: no element can be made for the process
  bool isRunning = false;
};

// A domain of preferences; absent: it cannot be opened.
using ScenePreferences = std::optional<PropertyListDictionary>;

struct SceneDirectory {};
struct SceneText {
  std::string text;
};
struct ScenePropertyListFile {
  PropertyList contents;
};
using SceneFile = std::variant<SceneText, ScenePropertyListFile, Data, SceneDirectory>;

// The assertion dictionaries of each process, or the code with which asking for them fails.
using SceneAssertions =
    std::variant<std::map<ProcessIdentifier, std::vector<PropertyListDictionary>>, std::int64_t>;

struct SceneSystem {
  std::string version = "15.3.1";
  std::vector<std::string> languages{"en"};
  std::vector<Rect> screens{{{0, 0}, {1440, 900}}};
  bool accessibilityTrusted = true;
  bool screenCaptureAccess = true;
  std::uint64_t requestBudget = SampleBudget::usualRequests;
};

struct SceneState {
  // Every element and application that exists at any time of the scene, those of steps included.
  std::vector<SceneElement> elements;
  std::vector<SceneApplication> applications;
  std::vector<std::size_t> launchOrder;  // of the applications that were launched
  std::vector<RunningApplication> installed;
  std::optional<ProcessIdentifier> frontmost;
  std::vector<WindowEntry> windows;  // front to back
  SceneSystem system;
  ScenePreferences standard = PropertyListDictionary();
  ScenePreferences helperPreferences = PropertyListDictionary();
  ScenePreferences mainAppPreferences = PropertyListDictionary();
  std::map<std::string, ScenePreferences, std::less<>> suites;
  PropertyListDictionary product;
  std::map<std::string, SceneFile, std::less<>> files;
  SceneAssertions assertions;

  // The running application with this process identifier, or null.
  SceneApplication* runningApplication(ProcessIdentifier process);
};

}  // namespace kestro
