// The user's languages, from the environment variables of the session's locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

// The variables that count, each absent when it is unset. An empty one counts as unset.
struct LocaleVariables {
  std::optional<std::string> language;  // LANGUAGE, a list
  std::optional<std::string> all;       // LC_ALL
  std::optional<std::string> messages;  // LC_MESSAGES
  std::optional<std::string> lang;      // LANG
};

LocaleVariables localeVariablesOfEnvironment();

// Language tags such as "de-DE", most preferred first, without repetitions; "en" when nothing else
// is known. As for translated texts, LANGUAGE counts only when the locale is not "C" or "POSIX".
std::vector<std::string> preferredLanguages(const LocaleVariables& variables);

}  // namespace kestro
