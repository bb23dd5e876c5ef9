#include "scene/DesktopLoader.h"

#include <limits>

#include "scene/GeometryLoader.h"

namespace kestro {
namespace {

constexpr std::int64_t ordinaryLayer = 0;
constexpr std::int64_t sharedReadOnly = 1;

// A field of a window entry: the usual value when it is missing, not reported when it is null.
std::optional<std::int64_t> loadWindowField(const JsonNode& window, std::string_view key,
                                            std::int64_t usual) {
  const auto field = window.find(key);
  if (!field) return usual;
  return field->isNull() ? std::nullopt : std::optional(field->integer());
}

WindowEntry loadWindow(const JsonNode& node) {
  node.expectKeys({"pid", "name", "layer", "sharing", "bounds"});
  WindowEntry window;
  const auto process = node.find("pid");
  if (process && !process->isNull())
    window.ownerProcessIdentifier = loadProcessIdentifier(*process);
  window.name = loadOptionalText(node, "name");
  window.layer = loadWindowField(node, "layer", ordinaryLayer);
  window.sharingState = loadWindowField(node, "sharing", sharedReadOnly);
  const auto bounds = node.find("bounds");
  if (bounds && !bounds->isNull()) window.bounds = loadRect(*bounds);
  return window;
}

RunningApplication loadDescription(const JsonNode& node) {
  RunningApplication application;
  application.bundleIdentifier = loadOptionalText(node, "bundleIdentifier");
  application.localizedName = loadOptionalText(node, "name");
  application.executablePath = loadOptionalText(node, "executable");
  application.bundlePath = loadOptionalText(node, "path");
  return application;
}

std::optional<bool> loadOptionalBoolean(const JsonNode& node, std::string_view key) {
  const auto value = node.find(key);
  return value ? std::optional(value->boolean()) : std::nullopt;
}

std::vector<Rect> loadScreens(const JsonNode& node) {
  std::vector<Rect> screens;
  node.forEachItem([&](const JsonNode& screen) { screens.push_back(loadRect(screen)); });
  return screens;
}

}  // namespace

std::optional<std::string> loadOptionalText(const JsonNode& node, std::string_view key) {
  const auto value = node.find(key);
  return value && !value->isNull() ? std::optional(value->text()) : std::nullopt;
}

ProcessIdentifier loadProcessIdentifier(const JsonNode& node) {
  return static_cast<ProcessIdentifier>(
      node.integer(0, std::numeric_limits<ProcessIdentifier>::max()));
}

std::size_t loadApplication(const JsonNode& node, SceneState& state, ElementLoader& elements) {
  node.expectKeys({"pid", "bundleIdentifier", "name", "executable", "path", "accessibility"});
  SceneApplication application{loadDescription(node), std::nullopt, false};
  application.description.processIdentifier = loadProcessIdentifier(node.member("pid"));
  const std::size_t index = state.applications.size();
  state.applications.push_back(std::move(application));

  // An application of which nothing more is said answers as any other does.
  static const SceneJson plainElement = SceneJson::object();
  const auto accessibility = node.find("accessibility");
  if (accessibility && accessibility->isNull()) return index;
  state.applications[index].element = elements.loadApplicationElement(
      accessibility ? accessibility->expectObject() : JsonNode(plainElement), index);
  return index;
}

RunningApplication loadInstalledApplication(const JsonNode& node) {
  return loadDescription(node.expectKeys({"bundleIdentifier", "name", "executable", "path"}));
}

std::vector<WindowEntry> loadWindows(const JsonNode& node) {
  std::vector<WindowEntry> windows;
  node.forEachItem([&](const JsonNode& window) { windows.push_back(loadWindow(window)); });
  return windows;
}

std::uint64_t loadBudget(const JsonNode& node) {
  constexpr std::int64_t most = 1'000'000;
  return static_cast<std::uint64_t>(node.integer(0, most));
}

SystemStep loadSystem(const JsonNode& node) {
  node.expectKeys({"version", "languages", "screens", "accessibilityTrusted", "screenCaptureAccess",
                   "requestBudget"});
  SystemStep system;
  if (const auto version = node.find("version")) system.version = version->text();
  if (const auto languages = node.find("languages")) system.languages = languages->texts();
  if (const auto screens = node.find("screens")) system.screens = loadScreens(*screens);
  system.accessibilityTrusted = loadOptionalBoolean(node, "accessibilityTrusted");
  system.screenCaptureAccess = loadOptionalBoolean(node, "screenCaptureAccess");
  if (const auto budget = node.find("requestBudget")) system.requestBudget = loadBudget(*budget);
  return system;
}

}  // namespace kestro
