#include "platform/scene/SceneFiles.h"

#include "platform/StringsText.h"

namespace kestro {

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

}  // namespace kestro
