// The text of a scene as JSON: comments allowed, duplicate keys and absurd depth refused. Private
// to this folder.
#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kestro {

using SceneJson = nlohmann::ordered_json;

// Why loading stopped; `what()` is what follows the file's name: ":LINE:COLUMN: reason",
// ": /pointer: reason", or ": reason" for the root. Never leaves the loader.
class SceneLoadFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Throws SceneLoadFailure.
SceneJson parseSceneJson(std::string_view text);

SceneLoadFailure failureAt(std::string_view pointer, std::string_view reason);

// A key as part of a JSON pointer (RFC 6901).
std::string pointerToken(std::string_view key);

}  // namespace kestro
