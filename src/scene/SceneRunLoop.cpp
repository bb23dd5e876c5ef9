#include "scene/SceneRunLoop.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace kestro {
namespace {

constexpr std::chrono::seconds patienceAfterEnd{60};
constexpr int overdueStatus = 1;
// Tasks that post each other without end, and timers that are due at once, would not let the time
// go on.
constexpr int mostRunsAtOneMoment = 1'000'000;
constexpr Seconds longestDelay{1e8};
constexpr Seconds shortestInterval{0.001};

Date::duration clamped(Seconds duration, Seconds least) {
  const Seconds usable = std::isnan(duration.count()) ? least : duration;
  // Cut instead of rounded, a timer would be due before its time, and set itself once more.
  return std::chrono::round<Date::duration>(std::clamp(usable, least, longestDelay));
}

// The first multiple after `due` that is not past.
Date nextDue(Date due, Date::duration interval, Date now) {
  const Date next = due + interval;
  if (next >= now) return next;
  const auto missed = (now - next + interval - Date::duration(1)) / interval;
  return next + missed * interval;
}

}  // namespace

struct SceneRunLoop::TimerEntry {
  Date::duration interval;  // zero: runs once
  Task task;
  TaskOrigin origin;
  bool isCancelled = false;
};

class SceneRunLoop::TimerHandle final : public Timer {
 public:
  explicit TimerHandle(std::shared_ptr<TimerEntry> entry) : entry_(std::move(entry)) {}
  ~TimerHandle() override {
    entry_->isCancelled = true;
    entry_->task = nullptr;
  }
  TimerHandle(const TimerHandle&) = delete;
  TimerHandle& operator=(const TimerHandle&) = delete;

 private:
  std::shared_ptr<TimerEntry> entry_;
};

SceneRunLoop::SceneRunLoop(SceneClock& clock, SystemLog& log, std::vector<ScriptedEvent> events,
                           Date end)
    : clock_(clock), log_(log), events_(std::move(events)) {
  eventsBeforeEnd_ = events_.size();
  events_.push_back({end, [this] { requestTermination(); }});
  events_.push_back({end + patienceAfterEnd, [this] { stop(overdueStatus); }});
}

SceneRunLoop::~SceneRunLoop() = default;

void SceneRunLoop::post(Task task, TaskOrigin origin) {
  posted_.push_back({std::move(task), origin});
}

std::unique_ptr<Timer> SceneRunLoop::scheduleAfter(Seconds delay, Task task, TaskOrigin origin) {
  return schedule(clock_.now() + clamped(delay, Seconds(0)), Date::duration(0), std::move(task),
                  origin);
}

std::unique_ptr<Timer> SceneRunLoop::scheduleEvery(Seconds interval, Task task, TaskOrigin origin) {
  const auto period = clamped(interval, shortestInterval);
  return schedule(clock_.now() + period, period, std::move(task), origin);
}

std::unique_ptr<Timer> SceneRunLoop::scheduleAt(Date date, Task task, TaskOrigin origin) {
  return schedule(std::max(date, clock_.now()), Date::duration(0), std::move(task), origin);
}

void SceneRunLoop::sleep(Seconds duration) {
  clock_.advanceTo(clock_.now() + clamped(duration, Seconds(0)));
}

std::unique_ptr<Timer> SceneRunLoop::schedule(Date due, Date::duration interval, Task task,
                                              TaskOrigin origin) {
  auto entry = std::make_shared<TimerEntry>(TimerEntry{interval, std::move(task), origin});
  timers_.emplace(TimerKey(due, nextSequence_++), entry);
  return std::make_unique<TimerHandle>(std::move(entry));
}

int SceneRunLoop::run() {
  isServing_ = true;
  while (!exitStatus_) {
    serveOne();
  }
  isServing_ = false;
  return *std::exchange(exitStatus_, std::nullopt);
}

void SceneRunLoop::serveOne() {
  const bool hasEvent = nextEvent_ < events_.size();
  // What has happened on the desktop by now comes before anything that the helper does now.
  if (hasEvent && events_[nextEvent_].due <= clock_.now()) return runScripted();
  if (!posted_.empty()) return runPosted();
  dropCancelledTimers();
  if (timers_.empty() && !hasEvent) return stop(overdueStatus);
  if (hasEvent && (timers_.empty() || events_[nextEvent_].due <= timers_.begin()->first.first)) {
    return runScripted();
  }
  runTimer();
}

void SceneRunLoop::runPosted() {
  const PostedTask posted = std::move(posted_.front());
  posted_.pop_front();
  if (makesProgress(posted.origin)) posted.task();
}

void SceneRunLoop::runScripted() {
  const ScriptedEvent& event = events_[nextEvent_++];
  clock_.advanceTo(event.due);
  event.task();
}

void SceneRunLoop::runTimer() {
  const auto [key, entry] = *timers_.begin();
  timers_.erase(timers_.begin());
  clock_.advanceTo(key.first);
  if (!makesProgress(entry->origin)) return;
  // The task may destroy its own timer, and with it the entry's copy.
  const Task task = entry->task;
  task();
  if (entry->isCancelled || entry->interval == Date::duration(0)) return;
  timers_.emplace(TimerKey(nextDue(key.first, entry->interval, clock_.now()), key.second), entry);
}

bool SceneRunLoop::makesProgress(TaskOrigin origin) {
  if (std::exchange(lastRun_, clock_.now()) != clock_.now()) runsAtThisMoment_ = 0;
  if (++runsAtThisMoment_ <= mostRunsAtOneMoment) return true;
  log_.write(fmt::format(
      "The scene stands still: the timer or task made in {}, line {}, runs again and again.",
      std::filesystem::path(origin.file).filename().string(), origin.line));
  stop(overdueStatus);
  return false;
}

void SceneRunLoop::dropCancelledTimers() {
  while (!timers_.empty() && timers_.begin()->second->isCancelled) {
    timers_.erase(timers_.begin());
  }
}

void SceneRunLoop::requestTermination() {
  if (!isServing_ || std::exchange(isTerminating_, true)) return;
  if (!terminationHandler_) return stop(0);
  const Task handler = terminationHandler_;
  handler();
}

void SceneRunLoop::requestRestart() {
  isRestartRequested_ = true;
  requestTermination();
}

bool SceneRunLoop::beginNextLife() {
  forgetLife();
  while (!isRestartRequested_ && nextEvent_ < eventsBeforeEnd_) {
    runScripted();
  }
  return std::exchange(isRestartRequested_, false) && nextEvent_ <= eventsBeforeEnd_;
}

void SceneRunLoop::forgetLife() {
  posted_.clear();
  runsAtThisMoment_ = 0;
  timers_.clear();
  terminationHandler_ = nullptr;
  exitStatus_.reset();
  isTerminating_ = false;
}

}  // namespace kestro
