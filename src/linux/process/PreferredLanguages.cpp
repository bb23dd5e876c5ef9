#include "linux/process/PreferredLanguages.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace kestro {
namespace {

std::optional<std::string> environmentVariable(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::optional<std::string>(value) : std::nullopt;
}

bool isTagCharacter(unsigned char character) {
  return std::isalnum(character) || character == '-';
}

// "de_AT.UTF-8@euro" → "de-AT"; absent for "C", "POSIX" and what is no language.
std::optional<std::string> languageTag(std::string_view locale) {
  std::string tag(locale.substr(0, locale.find_first_of(".@")));
  std::ranges::replace(tag, '_', '-');
  if (tag == "C" || tag == "POSIX" || tag.size() < 2) return std::nullopt;
  if (!std::ranges::all_of(tag, isTagCharacter)) return std::nullopt;
  return tag;
}

void append(std::vector<std::string>& tags, std::string_view locale) {
  const auto tag = languageTag(locale);
  if (tag && std::ranges::find(tags, *tag) == tags.end()) tags.push_back(*tag);
}

void appendList(std::vector<std::string>& tags, std::string_view list) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(':'), list.size());
    append(tags, list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
}

std::string localeOf(const LocaleVariables& variables) {
  for (const auto* variable : {&variables.all, &variables.messages, &variables.lang}) {
    if (*variable && !(*variable)->empty()) return **variable;
  }
  return "C";
}

}  // namespace

LocaleVariables localeVariablesOfEnvironment() {
  return {environmentVariable("LANGUAGE"), environmentVariable("LC_ALL"),
          environmentVariable("LC_MESSAGES"), environmentVariable("LANG")};
}

std::vector<std::string> preferredLanguages(const LocaleVariables& variables) {
  std::vector<std::string> tags;
  const std::string locale = localeOf(variables);
  if (languageTag(locale) && variables.language) appendList(tags, *variables.language);
  append(tags, locale);
  if (tags.empty()) tags.emplace_back("en");
  return tags;
}

}  // namespace kestro
