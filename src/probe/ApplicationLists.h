// The applications that the probe treats specially. Each list is built at its first use from its
// built-in content and one preference, and is then fixed for the life of the process. Membership is
// exact equality. Main thread only.
#pragma once

#include <optional>
#include <set>
#include <string>

#include "platform/Process.h"

namespace kestro {

class ApplicationLists {
 public:
  using Set = std::set<std::string>;

  explicit ApplicationLists(Process& process) : process_(process) {}

  // Never tracked: system agents and helper processes.
  const Set& alwaysIgnoredApplicationBundleIdentifiers();
  // Never tracked, by the name of the executable file.
  const Set& alwaysIgnoredApplicationExecutableNames();
  // Nothing about their windows is read.
  const Set& noWindowTitleApplicationBundleIdentifiers();
  // Not read through accessibility. The preference replaces the built-in content.
  const Set& noAccessibilityApplicationBundleIdentifiers();
  // The document of their windows is not read.
  const Set& noPathExtractionApplicationBundleIdentifiers();

 private:
  enum class PreferenceRole { extends, replaces };
  const Set& build(std::optional<Set>& list, Set builtIn, std::string_view preferenceKey,
                   PreferenceRole preferenceRole = PreferenceRole::extends);

  Process& process_;
  std::optional<Set> alwaysIgnoredBundleIdentifiers_;
  std::optional<Set> alwaysIgnoredExecutableNames_;
  std::optional<Set> noWindowTitle_;
  std::optional<Set> noAccessibility_;
  std::optional<Set> noPathExtraction_;
};

}  // namespace kestro
