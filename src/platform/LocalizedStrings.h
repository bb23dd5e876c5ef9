// The helper's user-visible texts in the user's language. The tables are resources/*.lproj in the
// source tree and part of the program. The language is chosen once per process: the first preferred
// one that has a table, English without one. Main thread only.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

class Process;

// The text for an English key; the key itself when the table has none.
std::string localizedString(Process& process, std::string_view key);
// The same with the arguments in the places of the text's "%@" and "%f", in their order. A place
// without an argument stays as it is.
std::string localizedFormat(Process& process, std::string_view key, std::string_view argument);
std::string localizedFormat(Process& process, std::string_view key,
                            const std::vector<std::string>& arguments);

// Marks a key that stands elsewhere than in a call of these functions, in an array for example: a
// test looks for literal keys in calls and marks, and compares them with the tables.
constexpr std::string_view localizable(std::string_view key) {
  return key;
}

// The language of the texts for a user of these languages, the most preferred first.
std::string_view languageOfTexts(const std::vector<std::string>& preferredLanguages);

struct LocalizedTable {
  std::string_view language;
  std::string_view text;  // as dictionaryFromStringsText reads it
};

// The tables in the program. CMake writes the source of this function.
std::span<const LocalizedTable> localizedTables();

}  // namespace kestro
