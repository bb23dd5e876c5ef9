// The windows' own texts in the user's language, from the tables that the helper has, too.
#pragma once

#include <QString>
#include <string_view>

#include "foundation/PropertyList.h"

namespace kestro {

class DialogTexts {
 public:
  // A language without a table counts as English.
  explicit DialogTexts(const QString& language);

  // The text for an English key.
  QString operator()(std::string_view key) const;

 private:
  PropertyListDictionary texts_;
};

}  // namespace kestro
