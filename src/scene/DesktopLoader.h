// Applications, windows and system settings in a scene. Private to this folder.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "scene/ElementLoader.h"
#include "scene/JsonNode.h"
#include "scene/SceneState.h"
#include "scene/SceneStep.h"

namespace kestro {

// A member that is a text, absent when it is missing or null.
std::optional<std::string> loadOptionalText(const JsonNode& node, std::string_view key);

ProcessIdentifier loadProcessIdentifier(const JsonNode& node);

// Adds the application to the state, not yet running; its place in SceneState::applications. Its
// elements must have been declared.
std::size_t loadApplication(const JsonNode& node, SceneState& state, ElementLoader& elements);
RunningApplication loadInstalledApplication(const JsonNode& node);

std::vector<WindowEntry> loadWindows(const JsonNode& node);
SystemStep loadSystem(const JsonNode& node);

}  // namespace kestro
