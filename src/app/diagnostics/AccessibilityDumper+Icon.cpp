// The icon dump.
#include <algorithm>

#include "app/diagnostics/AccessibilityDumper.h"
#include "app/diagnostics/PrintLine.h"
#include "platform/Files.h"
#include "platform/Workspace.h"

namespace kestro {
namespace {

constexpr std::string_view iconExtension = ".icns";

struct NamedBundle {
  std::string path;
  std::string identifier;
  std::string localizedName;
};

std::optional<NamedBundle> findBundle(Process& process, const std::string& bundleIdentifier) {
  Workspace& workspace = process.platform().workspace;
  const auto path = workspace.applicationPath(bundleIdentifier);
  const auto bundle = path ? workspace.bundleAtPath(*path) : std::nullopt;
  if (!bundle || !bundle->bundleIdentifier || !bundle->localizedName) return std::nullopt;
  return NamedBundle{*path, *bundle->bundleIdentifier, *bundle->localizedName};
}

std::optional<std::string> iconPath(Process& process, const NamedBundle& bundle) {
  const auto information = process.platform().files.dictionary(std::filesystem::path(bundle.path) /
                                                               "Contents" / "Info.plist");
  const auto* value = information ? information->find("CFBundleIconFile") : nullptr;
  const auto* name = value ? value->get<std::string>() : nullptr;
  if (!name) return std::nullopt;
  std::string path = std::filesystem::path(bundle.path) / "Contents" / "Resources" / *name;
  if (!path.ends_with(iconExtension)) path += iconExtension;
  return path;
}

// A slash in a name would lead to another folder; file managers show the colon as one.
std::string copyName(const NamedBundle& bundle) {
  std::string name = fmt::format("{} {}{}", bundle.identifier, bundle.localizedName, iconExtension);
  std::ranges::replace(name, '/', ':');
  return name;
}

void copyIcon(Process& process, const NamedBundle& bundle, const std::string& icon) {
  Files& files = process.platform().files;
  const auto documents = files.documentsDirectory();
  if (!documents) {
    return printLine(process,
                     "Application icon for '{}' could not be copied: there is no documents folder.",
                     bundle.identifier);
  }
  const std::string folder = *documents + "/Kestro/AppIcons";
  const std::string target = folder + "/" + copyName(bundle);
  auto failure = files.makeDirectories(folder);
  if (!failure) failure = files.copy(icon, target);
  if (!failure) return;
  printLine(process, "Application icon for '{}' could not be copied to '{}': {}.",
            bundle.identifier, target, *failure);
}

}  // namespace

void AccessibilityDumper::dumpIconForApplicationWithPossibleBundleIdentifier(
    Process& process, const std::string& possibleBundleIdentifier) {
  const auto bundle = findBundle(process, possibleBundleIdentifier);
  if (!bundle) return printLine(process, "Application '{}' not found.", possibleBundleIdentifier);
  const auto icon = iconPath(process, *bundle);
  if (!icon) {
    return printLine(process, "Application icon path for '{}' not found.", bundle->identifier);
  }
  if (!process.platform().files.exists(*icon)) {
    return printLine(process, "Application icon for '{}' not found at '{}'.", bundle->identifier,
                     *icon);
  }
  copyIcon(process, *bundle, *icon);
}

}  // namespace kestro
