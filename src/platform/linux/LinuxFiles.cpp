#include "platform/linux/LinuxFiles.h"

#include "platform/StringsText.h"
#include "platform/linux/PropertyListFile.h"
#include "platform/linux/WholeFile.h"

namespace kestro {

std::optional<PropertyListDictionary> LinuxFiles::dictionary(const std::string& path) {
  const auto text = readWholeFile(path);
  if (!text) return std::nullopt;
  auto contents = propertyListFromText(*text);
  return contents ? contents : dictionaryFromStringsText(*text);
}

}  // namespace kestro
