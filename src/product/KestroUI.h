// The operations of the product's user-interface library that the helper uses: the tracking loop
// and its protocols, the activity store, hints, and helpers for titles. Main thread only.
#pragma once

#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/Date.h"
#include "product/Activity.h"
#include "product/ActivityWriter.h"
#include "product/DatabaseWrapper.h"
#include "product/HelperHelper.h"
#include "product/StatusItemInfoProvider.h"
#include "product/SupportRequests.h"
#include "product/TimeEntries.h"

namespace kestro {

class Process;

// What the probe knows about its own success with accessibility.
class InfoLoggerAccessibilityStatsProvider {
 public:
  virtual ~InfoLoggerAccessibilityStatsProvider() = default;

  virtual std::int64_t numberOfTimesWeHaveSeenAlwaysIgnoredApplications() const = 0;
  virtual std::optional<std::string> lastAlwaysIgnoredApplication() const = 0;
  virtual bool hasEnteredAccessibilityBranchAtAll() const = 0;
  virtual bool hasSuccessfullyFetchedAccessibilityApplication() const = 0;
  virtual bool hasSuccessfullyFetchedAccessibilityWindow() const = 0;
  virtual std::optional<Date> lastSuccessfulAccessibilityWindowFetch() const = 0;
  virtual std::int64_t unsuccessfulWindowFetchesSinceLastSuccessful() const = 0;
  virtual std::optional<std::string> lastApplicationWithoutWindow() const = 0;
  // The platform's error code of the last failed request for a window; 1 before the first.
  virtual std::int64_t lastWindowFetchError() const = 0;
  virtual bool hasSuccessfullyUsedAccessibility() const = 0;
};

// Where the tracking loop gets its activities.
class InfoLoggerExtractor {
 public:
  virtual ~InfoLoggerExtractor() = default;

  // Absent when nothing is to be tracked now.
  virtual std::optional<Activity> getCurrentActivity() = 0;
  virtual void callInfoExtractorFor(Activity& activity) = 0;
  virtual const std::set<std::string>& noAccessibilityApplicationBundleIdentifiers() = 0;
  virtual const InfoLoggerAccessibilityStatsProvider& accessibilityStatsProvider() = 0;
  // Ends this process after the delay and starts the helper anew.
  virtual void relaunchWithDelay(Seconds delay, PropertyListDictionary attributes) = 0;
};

// Shows whether the loop is tracking.
class InfoLoggerPresenter {
 public:
  virtual ~InfoLoggerPresenter() = default;
  virtual void updateStatusItemTransparency() = 0;
};

// Told about every sampled activity, after its extractor ran.
class InfoLoggerCallDetector {
 public:
  virtual ~InfoLoggerCallDetector() = default;
  // Gives the activity the title of a page that is looked at when its window has none.
  virtual void updateCallStatusForActivity(Activity& activity) = 0;
  // Whether it wants samples while tracking is paused; nothing else is done with those.
  virtual bool detectsCallsWhenTrackingIsPaused() const = 0;

  // For the loop's own display.
  virtual bool hasRunningCall() const = 0;
  virtual std::optional<std::string> descriptionOfRunningCalls() const = 0;
};

// How the end of a call is offered. A preference of the helper's, shared with the main application.
enum class CallNotificationMode { notification, popover, none };
CallNotificationMode callNotificationMode(Process& process);
void setCallNotificationMode(Process& process, CallNotificationMode mode);

// The tracking loop. Samples at once when tracking starts and then once per sampling interval (one
// second, unless the product's conditions say otherwise), and hands each sample to the writer.
class InfoLogger {
 public:
  explicit InfoLogger(Process& process);
  ~InfoLogger();

  // None is owned; they must outlive the loop or be replaced by null.
  void setPresenter(InfoLoggerPresenter* presenter);
  void setInfoExtractor(InfoLoggerExtractor* extractor);
  void setCallDetector(InfoLoggerCallDetector* callDetector);

  bool shouldTrack() const;
  void setShouldTrack(bool shouldTrack);

  // Whether the call detector knows of a call now. When that changes, the notification
  // productNotification::runningCallsDidChange is posted.
  bool hasRunningCall() const;

  // The user has opened the status item's menu; nothing to the embedded product.
  void statusItemClicked();

  // Writes what is held back and, unless a relaunch is to follow, ends sampling. True when the
  // writing goes on after the call and its end will be announced, by the notification
  // ActivityWriter::flushAndSyncFinishedNotification.
  bool prepareForShutdown(bool isRelaunch);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// A piece of advice to the user, shown by the product when it sees fit.
class Hint {
 public:
  static Hint advancedAccessibilityTrackingEnabled() {
    return Hint("advancedAccessibilityTrackingEnabled");
  }
  void enqueueForNotification(Process& process) const;

 private:
  explicit Hint(std::string_view name) : name_(name) {}
  std::string name_;
};

// The title without `prefixOrSuffix`, once at either end, where a separator joins it to the rest: a
// dash, bar, bullet, middle dot, colon or slash with white space around it (a colon may follow the
// word before it at once), or white space and a bracketed form. The word is compared exactly and
// stays where it is only part of another. White space around what is compared and returned is
// trimmed. When nothing but that text remains: absent if `alsoRemoveIfFullString`, else that text.
std::optional<std::string> removingTitlePrefixesAndSuffixes(std::string_view title,
                                                            std::string_view prefixOrSuffix,
                                                            bool alsoRemoveIfFullString);

// The text without emoji and white space at its end. Digits and other characters that are ordinary
// text unless an emoji sequence makes them emoji stay.
std::string removingTrailingEmojiAndWhitespace(std::string_view text);

// The first present result of `function` applied to the members of `list`, in order.
template <class List, class Function>
auto firstNonNil(const List& list, Function&& function) -> decltype(function(*std::begin(list))) {
  for (const auto& member : list) {
    if (auto result = function(member)) return result;
  }
  return std::nullopt;
}

}  // namespace kestro
