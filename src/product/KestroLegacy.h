// The operations of the product's older shared library that the helper uses: permissions, the
// product's preferences, analytics, and helpers for texts. Main thread only.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/PropertyList.h"
#include "foundation/RegularExpression.h"
#include "platform/Accessibility.h"
#include "product/Shortcuts.h"

namespace kestro {

class Process;

class KSHelper {
 public:
  // Whether this process may use the accessibility interface now.
  static bool accessibilityAvailable(Process& process);
  // The whole path of a process's executable; absent when it cannot be known.
  static std::optional<std::string> getPathForProcess(Process& process, ProcessIdentifier pid);
  // Opens the system's settings where the user permits accessibility.
  static void openAccessibilityPreferencePane(Process& process);
  // Of the product's main application.
  static std::string mainAppBundleIdentifierForLaunching();
};

// Whether the helper starts when the user logs in.
class KSStartupManager {
 public:
  static bool shouldStartAtLogin(Process& process);
  static void setShouldStartAtLogin(Process& process, bool starts);
};

// The preferences of the product's main application.
class MainAppPreferences {
 public:
  static MainAppPreferences& sharedInstance(Process& process);
  // Use sharedInstance.
  explicit MainAppPreferences(Process& process);
  // Whether the user has been shown around. True unless the main application says that it is still
  // to be done.
  bool onboardingHasCompleted() const;

 private:
  Process& process_;
};

// The preferences that the product keeps for its helper.
class HelperPreferences {
 public:
  // For start-up, which has it made early; others ask the process for it.
  static HelperPreferences& sharedInstance(Process& process);
  explicit HelperPreferences(Process& process) : process_(process) {}

  // Whether web-view applications may be asked to show their accessibility tree. True unless the
  // user has turned it off.
  bool advancedAccessibilityTrackingEnabled() const;

  // Whether the notification of an ended call plays a sound. False unless the user has turned it
  // on.
  bool playSoundWhenMeetingDetected() const;
  void setPlaySoundWhenMeetingDetected(bool plays) const;

  // Whether the status item is shown. True unless the user has hidden it.
  bool statusItemVisible() const;

  // Whether the user is asked what they did after having been away. False unless turned on.
  bool shouldAskForTaskAfterIdle() const;
  void setShouldAskForTaskAfterIdle(bool asks) const;
  // Whether time away is not tracked. True unless turned off.
  bool shouldSuspendTrackingUponIdle() const;

  // The user's shortcut for the timer; absent: none.
  static constexpr const char* startTaskShortcutKey = "startTaskShortcut";
  std::optional<MASShortcut> startTaskShortcut() const { return getShortcut(startTaskShortcutKey); }
  // The shortcut that is stored or, before one is, that of the product's conditions.
  std::optional<MASShortcut> getShortcut(const std::string& key) const;

  // As stored: absent where the key is unset or its value cannot count as the type.
  std::optional<bool> getBool(std::string_view key) const;
  std::optional<double> getDouble(std::string_view key) const;
  std::optional<std::string> getString(std::string_view key) const;
  // As `getString`; an empty text counts as unset.
  std::optional<std::string> getNonEmptyString(std::string_view key) const;
  std::optional<std::vector<std::string>> getStringList(std::string_view key) const;
  void set(PropertyList object, std::string_view key) const;

 private:
  Process& process_;
};

// One preference of the helper's, with the value that it has when it is unset or of another type.
// Tells the value as it is now, also when it was changed from outside.
template <class Value>
class PreferenceObserver {
 public:
  PreferenceObserver(Process& process, std::string key, Value defaultValue)
      : preferences_(process), key_(std::move(key)), default_(std::move(defaultValue)) {}

  Value value() const;
  void set(const Value& value) { preferences_.set(value, key_); }

 private:
  HelperPreferences preferences_;
  std::string key_;
  Value default_;
};

template <>
inline bool PreferenceObserver<bool>::value() const {
  return preferences_.getBool(key_).value_or(default_);
}
template <>
inline std::vector<std::string> PreferenceObserver<std::vector<std::string>>::value() const {
  return preferences_.getStringList(key_).value_or(default_);
}

// Records of what happens, for the product's makers. They stay on this machine.
class AnalyticsWrapper {
 public:
  enum class SamplingFrequency { always, medium };
  enum class Flags { none, sensitive };

  static void logEvent(Process& process, std::string_view name, PropertyListDictionary attributes,
                       SamplingFrequency samplingFrequency, Flags flags);
  static void logEvent(Process& process, std::string_view name, PropertyListDictionary attributes,
                       bool isCritical);
  // The number with its first digit only, so that an event does not tell it exactly: 1754 is 2000,
  // 96 is 100, 0 is 0.
  static double roundNumberToLogScale(double number);
};

class Log {
 public:
  // One line of the system log.
  static void warning(Process& process, std::string_view text);
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
