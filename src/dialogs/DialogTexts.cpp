#include "dialogs/DialogTexts.h"

#include <string>

#include "foundation/StringsText.h"
#include "platform/LocalizedStrings.h"

namespace kestro {

DialogTexts::DialogTexts(const QString& language) {
  const std::string name = language.toStdString();
  for (const LocalizedTable& table : localizedTables()) {
    if (table.language != name) continue;
    texts_ = dictionaryFromStringsText(table.text).value_or(PropertyListDictionary());
  }
}

QString DialogTexts::operator()(std::string_view key) const {
  const PropertyList* found = texts_.find(key);
  const auto* text = found ? found->get<std::string>() : nullptr;
  return text ? QString::fromStdString(*text)
              : QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

}  // namespace kestro
