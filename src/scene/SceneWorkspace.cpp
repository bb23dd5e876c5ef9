#include "scene/SceneWorkspace.h"

#include <algorithm>

namespace kestro {
namespace {

std::optional<std::string> text(const PropertyListDictionary& dictionary, std::string_view key) {
  const PropertyList* value = dictionary.find(key);
  const auto* found = value ? value->get<std::string>() : nullptr;
  return found ? std::optional(*found) : std::nullopt;
}

std::optional<ApplicationBundle> describedBundle(const RunningApplication& application) {
  return ApplicationBundle{application.bundleIdentifier, application.localizedName};
}

bool isPlainFile(const SceneState& state, const std::string& path) {
  const auto file = state.files.find(path);
  return file != state.files.end() && !std::holds_alternative<SceneDirectory>(file->second);
}

}  // namespace

std::optional<RunningApplication> SceneWorkspace::frontmostApplication() {
  return state_.frontmost ? runningApplication(*state_.frontmost) : std::nullopt;
}

std::optional<RunningApplication> SceneWorkspace::runningApplication(ProcessIdentifier process) {
  const SceneApplication* application = state_.runningApplication(process);
  return application ? std::optional(application->description) : std::nullopt;
}

std::vector<RunningApplication> SceneWorkspace::runningApplications(
    std::string_view bundleIdentifier) {
  std::vector<RunningApplication> found;
  for (const std::size_t index : state_.launchOrder) {
    const SceneApplication& application = state_.applications[index];
    if (application.isRunning && application.description.bundleIdentifier == bundleIdentifier) {
      found.push_back(application.description);
    }
  }
  if (found.empty() && helper_.bundleIdentifier == bundleIdentifier) found.push_back(helper_);
  return found;
}

std::optional<std::string> SceneWorkspace::executablePath(ProcessIdentifier process) {
  const SceneApplication* application = state_.runningApplication(process);
  return application ? application->description.executablePath : std::nullopt;
}

// Running or not, as an application of the scene; else by the property list of a bundle. A file in
// the bundle's place is none.
std::optional<ApplicationBundle> SceneWorkspace::bundleAtPath(const std::string& path) {
  if (isPlainFile(state_, path)) return std::nullopt;
  for (const SceneApplication& application : state_.applications) {
    if (application.description.bundlePath == path) return describedBundle(application.description);
  }
  for (const RunningApplication& application : state_.installed) {
    if (application.bundlePath == path) return describedBundle(application);
  }
  const auto file = state_.files.find(path + "/Contents/Info.plist");
  if (file == state_.files.end()) return std::nullopt;
  const auto* list = std::get_if<ScenePropertyListFile>(&file->second);
  const auto* information = list ? list->contents.get<PropertyListDictionary>() : nullptr;
  if (!information) return std::nullopt;
  auto name = text(*information, "CFBundleDisplayName");
  if (!name) name = text(*information, "CFBundleName");
  return ApplicationBundle{text(*information, "CFBundleIdentifier"), name};
}

std::optional<std::string> SceneWorkspace::applicationPath(std::string_view bundleIdentifier) {
  for (const RunningApplication& application : runningApplications(bundleIdentifier)) {
    if (application.bundlePath) return application.bundlePath;
  }
  for (const RunningApplication& application : state_.installed) {
    if (application.bundleIdentifier == bundleIdentifier && application.bundlePath) {
      return application.bundlePath;
    }
  }
  return std::nullopt;
}

// Nothing is started: what is on the desktop is the scene's to say.
void SceneWorkspace::openApplication(const std::string& bundlePath) {
  const auto bundle = bundleAtPath(bundlePath);
  PropertyListDictionary fields;
  if (bundle) fields.setIfPresent("bundleIdentifier", bundle->bundleIdentifier);
  transcript_.record("open", std::move(fields));
}

}  // namespace kestro
