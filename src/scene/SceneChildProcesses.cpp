#include "scene/SceneChildProcesses.h"

#include <algorithm>
#include <array>

namespace kestro {
namespace {

constexpr std::string_view preferencesProgram = "/usr/bin/defaults";
constexpr int failureStatus = 1;

std::optional<bool> parseBoolean(std::string_view text) {
  constexpr std::array<std::string_view, 2> trueTexts{"true", "YES"};
  constexpr std::array<std::string_view, 2> falseTexts{"false", "NO"};
  if (std::ranges::find(trueTexts, text) != trueTexts.end()) return true;
  if (std::ranges::find(falseTexts, text) != falseTexts.end()) return false;
  return std::nullopt;
}

// `write DOMAIN KEY -bool VALUE`; whatever else the program could do is left out.
ExitStatus writePreference(SceneState& state, const std::vector<std::string>& arguments) {
  if (arguments.size() != 5 || arguments[0] != "write" || arguments[3] != "-bool") return {};
  const auto value = parseBoolean(arguments[4]);
  auto& preferences =
      state.suites.try_emplace(arguments[1], PropertyListDictionary()).first->second;
  if (!value || !preferences) return {failureStatus};
  preferences->set(arguments[2], *value);
  return {};
}

}  // namespace

std::variant<ExitStatus, LaunchFailure> SceneChildProcesses::runAndWait(
    const std::string& path, const std::vector<std::string>& arguments) {
  if (auto failure = recordStart(path, arguments)) return std::move(*failure);
  if (programs_.contains(path) || path != preferencesProgram) return ExitStatus{};
  return writePreference(state_, arguments);
}

std::optional<LaunchFailure> SceneChildProcesses::startDetached(
    const std::string& path, const std::vector<std::string>& arguments) {
  return recordStart(path, arguments);
}

std::optional<LaunchFailure> SceneChildProcesses::recordStart(
    const std::string& path, const std::vector<std::string>& arguments) {
  transcript_.record("process", {{"path", path}, {"arguments", arguments}});
  const auto scripted = programs_.find(path);
  if (scripted == programs_.end() || !scripted->second.failure) return std::nullopt;
  return LaunchFailure{*scripted->second.failure};
}

}  // namespace kestro
