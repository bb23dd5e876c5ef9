#include "platform/LocalizedStrings.h"

#include <algorithm>

#include "foundation/StringsText.h"
#include "platform/Process.h"

namespace kestro {
namespace {

const LocalizedTable* tableFor(std::string_view language) {
  for (const LocalizedTable& table : localizedTables()) {
    if (table.language == language) return &table;
  }
  return nullptr;
}

// "de" for "de-AT" and "de_AT".
std::string_view withoutRegion(std::string_view language) {
  return language.substr(0, language.find_first_of("-_"));
}

const LocalizedTable* preferredTable(const std::vector<std::string>& languages) {
  for (const std::string& language : languages) {
    if (const auto* table = tableFor(withoutRegion(language))) return table;
  }
  return tableFor("en");
}

struct LocalizedStrings {
  explicit LocalizedStrings(Process& process) {
    const auto* table = preferredTable(process.platform().preferredLanguages);
    if (table) texts = dictionaryFromStringsText(table->text).value_or(PropertyListDictionary());
  }
  PropertyListDictionary texts;
};

}  // namespace

std::string_view languageOfTexts(const std::vector<std::string>& preferredLanguages) {
  const LocalizedTable* table = preferredTable(preferredLanguages);
  return table ? table->language : "en";
}

std::string localizedString(Process& process, std::string_view key) {
  const PropertyList* found = process.shared<LocalizedStrings>().texts.find(key);
  const auto* text = found ? found->get<std::string>() : nullptr;
  return text ? *text : std::string(key);
}

std::string localizedFormat(Process& process, std::string_view key, std::string_view argument) {
  return localizedFormat(process, key, std::vector<std::string>{std::string(argument)});
}

std::string localizedFormat(Process& process, std::string_view key,
                            const std::vector<std::string>& arguments) {
  constexpr std::size_t placeSize = 2;
  const std::string format = localizedString(process, key);
  std::string text;
  std::size_t position = 0;
  for (const std::string& argument : arguments) {
    const auto place = std::min(format.find("%@", position), format.find("%f", position));
    if (place == std::string::npos) break;
    text.append(format, position, place - position).append(argument);
    position = place + placeSize;
  }
  return text.append(format, position);
}

}  // namespace kestro
