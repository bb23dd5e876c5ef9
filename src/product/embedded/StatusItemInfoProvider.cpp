#include "product/StatusItemInfoProvider.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <algorithm>

#include "platform/Clock.h"
#include "platform/LocalizedStrings.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "product/KestroDatabase.h"
#include "product/KestroUI.h"
#include "product/embedded/ProductOperations.h"
#include "product/embedded/TrackedTime.h"

namespace kestro {
namespace {

constexpr int mostDurationComponents = 2;

std::string durationText(Process& process, Seconds duration) {
  return DurationFormatterBridge::shortString(process, duration, mostDurationComponents, false);
}

// The timer's duration is shown in minutes. In whole ticks of the clock: a fraction of one would be
// over before the minute is.
Date::duration untilNextMinute(Date::duration elapsed) {
  constexpr Date::duration minute = std::chrono::minutes(1);
  return minute - std::max(elapsed, Date::duration::zero()) % minute;
}

// Of the database when it is open, so that nothing opens it for a look.
std::optional<RunningTimer> runningTimer(Process& process) {
  const DatabaseWrapper* database = DatabaseWrapper::openSharedInstance(process);
  return database ? OngoingTaskActivityManager(process).runningTimer() : std::nullopt;
}

std::string trackedTimeText(Process& process) {
  const auto tracked = timeTrackedToday(process);
  return tracked ? durationText(process, *tracked) : "–";
}

std::string timerText(Process& process, const std::optional<RunningTimer>& timer) {
  if (!timer) return localizedString(process, "No Timer Running");
  const std::string duration = durationText(process, process.platform().clock.now() - timer->start);
  return timer->title ? *timer->title + " · " + duration : duration;
}

}  // namespace

std::optional<Seconds> timeTrackedToday(Process& process) {
  DatabaseWrapper* database = DatabaseWrapper::openSharedInstance(process);
  const bool isOpen = database && database->isOpen();
  return isOpen ? trackedTimeToday(process, database->db()) : std::nullopt;
}

StatusItemInfoProvider& StatusItemInfoProvider::sharedInstance(Process& process) {
  return process.shared<StatusItemInfoProvider>();
}

StatusItemInfoProvider::StatusItemInfoProvider(Process& process) : process_(process) {}
StatusItemInfoProvider::~StatusItemInfoProvider() = default;

void StatusItemInfoProvider::setPresenter(StatusItemPresenter* presenter) {
  if (presenter) recordOperation(process_, "StatusItemInfoProvider setPresenter", {true});
  presenter_ = presenter;
}

void StatusItemInfoProvider::dispatchStatusUpdateRequest(bool isForced) {
  recordOperation(process_, "StatusItemInfoProvider dispatchStatusUpdateRequest", {isForced});
  updateAfter(Seconds(0));
}

// The latest request is the one that counts.
void StatusItemInfoProvider::updateAfter(Seconds delay) {
  nextUpdate_ = process_.platform().runLoop.scheduleAfter(delay, [this] {
    if (presenter_) presenter_->updateStatusItemProperties();
  });
}

void StatusItemInfoProvider::updateStatusItem(StatusItem& statusItem,
                                              MenuItem* productivityScoreMenuItem,
                                              MenuItem* taskInfoMenuItem) {
  recordOperation(process_, "StatusItemInfoProvider updateStatusItem");
  const auto timer = runningTimer(process_);
  StatusItemProperties properties = statusItem.properties();
  properties.isHighlighted = isHighlighted_;
  properties.title =
      timer ? durationText(process_, process_.platform().clock.now() - timer->start) : "";
  const bool isTracking = process_.shared<InfoLogger>().shouldTrack();
  properties.image = !isTracking ? "kestro.paused" : timer ? "kestro.timer" : "kestro.tracking";
  statusItem.setProperties(std::move(properties));
  if (timer) updateAfter(untilNextMinute(process_.platform().clock.now() - timer->start));
  if (productivityScoreMenuItem) productivityScoreMenuItem->title = trackedTimeText(process_);
  if (taskInfoMenuItem) taskInfoMenuItem->title = timerText(process_, timer);
}

void StatusItemInfoProvider::setStatusItemHighlighted(bool isHighlighted) {
  recordOperation(process_, "StatusItemInfoProvider setStatusItemHighlighted", {isHighlighted});
  isHighlighted_ = isHighlighted;
}

// There is no server whose answer could be waited for.
void StatusItemInfoProvider::prepareSyncStatusMenuItem(MenuItem*) {
  recordOperation(process_, "StatusItemInfoProvider prepareSyncStatusMenuItem");
  nextSyncTitle_ = process_.platform().runLoop.scheduleAfter(Seconds(0), [this] {
    if (presenter_) {
      presenter_->updateSyncStatusItemWithTitle(
          localizedString(process_, "No Server to Sync With"));
    }
  });
}

}  // namespace kestro
