// The operations of the product's older shared library that the helper uses: permissions, the
// product's preferences, analytics, and helpers for texts. Main thread only.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/PropertyList.h"
#include "platform/RegularExpression.h"

namespace kestro {

class Process;

class KSHelper {
 public:
  // Whether this process may use the accessibility interface now.
  static bool accessibilityAvailable(Process& process);
  // The whole path of a process's executable; absent when it cannot be known.
  static std::optional<std::string> getPathForProcess(Process& process, ProcessIdentifier pid);
};

// The preferences that the product keeps for its helper.
class HelperPreferences {
 public:
  explicit HelperPreferences(Process& process) : process_(process) {}

  // Whether web-view applications may be asked to show their accessibility tree. True unless the
  // user has turned it off.
  bool advancedAccessibilityTrackingEnabled() const;

  // As stored: absent where the key is unset or its value cannot count as the type.
  std::optional<bool> getBool(std::string_view key) const;
  std::optional<double> getDouble(std::string_view key) const;
  std::optional<std::vector<std::string>> getStringList(std::string_view key) const;
  void set(PropertyList object, std::string_view key) const;

 private:
  Process& process_;
};

// The first match of the expression in the text.
std::optional<RegularExpression::Match> firstMatch(std::string_view text,
                                                   const RegularExpression& expression);
bool matches(std::string_view text, const RegularExpression& expression);
// The text with every match replaced by the template; $1 stands for capture 1.
std::string replacing(std::string_view text, const RegularExpression& expression,
                      std::string_view replacementTemplate);

// The text without exactly this prefix or suffix when it has it, else unchanged.
std::string removingPrefixIfPresent(std::string_view text, std::string_view prefix);
std::string removingSuffixIfPresent(std::string_view text, std::string_view suffix);

enum class TruncationPosition { start, middle, end };
// The text, or, when it is longer than `length` characters (grapheme clusters, as a reader counts),
// a text of that length in which "…" stands where the rest was cut away.
std::string truncated(std::string_view text, std::size_t length, TruncationPosition position);

}  // namespace kestro
