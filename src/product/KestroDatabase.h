// The operations of the product's database library that the helper uses. Main thread only.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "foundation/Date.h"
#include "product/UserNotificationCenter.h"

namespace kestro {

class Process;

// Applications that the product knows by name.
class ApplicationList {
 public:
  // Bundle identifiers of Chromium-based browsers.
  static const std::set<std::string>& chromeBasedBrowserBundleIDs(Process& process);
  // Bundle identifiers of web browsers, those among them.
  static const std::set<std::string>& webBrowsing(Process& process);
};

// Durations as texts.
class DurationFormatter {
 public:
  enum class Style {
    // The two largest units: "45 s", "12 min", "1 h", "1 h 5 min"; whole seconds below a minute,
    // whole
    // minutes from there on, rounded down. Negative durations count as none.
    compact = 4,
  };
  static std::string format(Seconds duration, Style style);
};

// Durations as short texts in the user's language, for menus: "1h 5m", "45s".
class DurationFormatterBridge {
 public:
  // The largest units of hours, minutes and seconds that are not zero, `maxComponents` at most,
  // rounded down; seconds only below a minute. With `alwaysShowMinutes` also "0m" where no minute
  // is full, and no seconds. Negative durations count as none.
  static std::string shortString(Process& process, Seconds duration, int maxComponents,
                                 bool alwaysShowMinutes);
};

// The text without characters that shape or order text but show nothing: formatting characters
// (direction marks, zero-width joiners outside emoji, byte-order marks) and control characters
// other than tab and line feed.
std::string removingInvisibleControlCharacters(std::string_view text);

// The single member of a list, absent when it has none or several.
template <class List>
auto only(const List& list) -> std::optional<typename List::value_type> {
  if (list.size() != 1) return std::nullopt;
  return *list.begin();
}

}  // namespace kestro
