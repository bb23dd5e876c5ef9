#include "scene/SceneFiles.h"

#include "foundation/StringsText.h"

namespace kestro {
namespace {

constexpr const char* userDocuments = "/Users/kim/Documents";

// The reasons that a real file system gives.
constexpr const char* noSuchFile = "No such file or directory";
constexpr const char* isInTheWay = "File exists";
constexpr const char* notADirectory = "Not a directory";
constexpr const char* notAFile = "Is a directory";

std::string folderOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

}  // namespace

std::optional<PropertyListDictionary> SceneFiles::dictionary(const std::string& path) {
  const auto found = state_.files.find(path);
  if (found == state_.files.end()) return std::nullopt;
  if (const auto* text = std::get_if<SceneText>(&found->second)) {
    return dictionaryFromStringsText(text->text);
  }
  const auto* file = std::get_if<ScenePropertyListFile>(&found->second);
  const auto* contents = file ? file->contents.get<PropertyListDictionary>() : nullptr;
  return contents ? std::optional(*contents) : std::nullopt;
}

bool SceneFiles::isDirectory(const std::string& path) const {
  const auto found = state_.files.find(path);
  if (found != state_.files.end()) return std::holds_alternative<SceneDirectory>(found->second);
  const auto below = state_.files.lower_bound(path + "/");
  return below != state_.files.end() && below->first.starts_with(path + "/");
}

bool SceneFiles::exists(const std::string& path) {
  return state_.files.contains(path) || isDirectory(path);
}

std::optional<std::string> SceneFiles::copy(const std::string& from, const std::string& to) {
  if (!exists(from)) return noSuchFile;
  if (isDirectory(from)) return notAFile;
  if (exists(to)) return isInTheWay;
  if (!isDirectory(folderOf(to))) return noSuchFile;
  state_.files.insert_or_assign(to, state_.files.find(from)->second);
  transcript_.record("file", {{"path", to}, {"from", from}});
  return std::nullopt;
}

std::optional<std::string> SceneFiles::makeDirectories(const std::string& path) {
  for (auto end = path.find('/', 1);; end = path.find('/', end + 1)) {
    const std::string component = path.substr(0, end);
    if (exists(component) && !isDirectory(component)) return notADirectory;
    if (end == std::string::npos) break;
  }
  state_.files.insert_or_assign(path, SceneDirectory{});
  return std::nullopt;
}

std::optional<std::string> SceneFiles::documentsDirectory() {
  if (exists(userDocuments) && !isDirectory(userDocuments)) return std::nullopt;
  return userDocuments;
}

}  // namespace kestro
