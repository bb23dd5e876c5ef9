#include "linux/process/LinuxRunLoop.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <ctime>
#include <stdexcept>
#include <utility>

#include "linux/process/TerminationSignals.h"

namespace kestro {
namespace {

using Microseconds = std::uint64_t;

// How far the kernel may shift a wake-up to join it with others.
constexpr Microseconds timerAccuracy = 5'000;

Microseconds microseconds(Seconds duration) {
  constexpr double longest = 1e15;                         // about thirty years
  const double count = std::ceil(duration.count() * 1e6);  // never before its time
  if (std::isnan(count) || count <= 0) return 0;
  return static_cast<Microseconds>(std::min(count, longest));
}

Microseconds monotonicNow() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<Microseconds>(now.tv_sec) * 1'000'000 +
         static_cast<Microseconds>(now.tv_nsec) / 1'000;
}

// When a timer is due: microseconds of one of the kernel's clocks.
struct Moment {
  clockid_t clock;
  Microseconds time;
};

Moment momentAfter(Seconds delay) {
  return {CLOCK_MONOTONIC, monotonicNow() + microseconds(delay)};
}

// The wall clock: the kernel keeps the timer right when that is set.
Moment momentAt(Date date) {
  const auto sinceEpoch =
      std::chrono::duration_cast<std::chrono::microseconds>(date.time_since_epoch()).count();
  return {CLOCK_REALTIME, sinceEpoch > 0 ? static_cast<Microseconds>(sinceEpoch) : 0};
}

// A time source whose task may destroy the timer: what a running task needs lives in `State`.
class EventTimer final : public Timer {
 public:
  // With an interval, `due` is on the monotonic clock.
  EventTimer(sd_event* event, LinuxRunLoop& loop, Moment due, Microseconds interval,
             RunLoop::Task task)
      : state_(std::make_shared<State>(State{loop, std::move(task), interval, due.time})) {
    const int result = sd_event_add_time(event, &source_, due.clock, due.time, timerAccuracy,
                                         onTime, state_.get());
    if (result < 0) throw std::runtime_error("no timer can be made");
  }
  ~EventTimer() override {
    state_->isCancelled = true;
    sd_event_source_disable_unref(source_);
  }
  EventTimer(const EventTimer&) = delete;
  EventTimer& operator=(const EventTimer&) = delete;

  void keepReference() { state_->self = state_; }

 private:
  struct State {
    LinuxRunLoop& loop;
    RunLoop::Task task;
    Microseconds interval;  // 0: once
    Microseconds due;
    bool isCancelled = false;
    std::weak_ptr<State> self = {};
  };

  static int onTime(sd_event_source* source, std::uint64_t, void* context) {
    const auto state = static_cast<State*>(context)->self.lock();
    if (!state) return 0;
    const RunLoop::Task task = state->task;
    state->loop.perform(task);
    // After the task: multiples of the interval that went by while it ran are left out.
    if (state->interval > 0 && !state->isCancelled) rearm(source, *state);
    return 0;
  }
  // Skips the multiples of the interval that have already gone by.
  static void rearm(sd_event_source* source, State& state) {
    const Microseconds now = monotonicNow();
    const Microseconds late = now > state.due ? now - state.due : 0;
    state.due += (late / state.interval + 1) * state.interval;
    sd_event_source_set_time(source, state.due);
    sd_event_source_set_enabled(source, SD_EVENT_ONESHOT);
  }

  std::shared_ptr<State> state_;
  sd_event_source* source_ = nullptr;
};

std::unique_ptr<Timer> makeTimer(sd_event* event, LinuxRunLoop& loop, Moment due,
                                 Microseconds interval, RunLoop::Task task) {
  auto timer = std::make_unique<EventTimer>(event, loop, due, interval, std::move(task));
  timer->keepReference();
  return timer;
}

// Waits until the time is over or a termination signal is pending, which stays so: its descriptor
// is looked at and never read.
void waitForTerminationSignal(Microseconds duration) {
  constexpr Microseconds longestTurn = 3'600'000'000;
  const sigset_t signals = terminationSignalSet();
  const int descriptor = signalfd(-1, &signals, SFD_CLOEXEC);
  pollfd entry{descriptor, POLLIN, 0};  // none could be made: a negative one is passed over
  const Microseconds end = monotonicNow() + duration;
  int ready = 0;
  for (Microseconds now = monotonicNow(); now < end && ready <= 0; now = monotonicNow()) {
    const Microseconds left = std::min(end - now, longestTurn);
    const timespec turn{static_cast<time_t>(left / 1'000'000),
                        static_cast<long>(left % 1'000'000) * 1'000};
    ready = ppoll(&entry, 1, &turn, nullptr);
  }
  if (descriptor >= 0) close(descriptor);
}

}  // namespace

LinuxRunLoop::LinuxRunLoop(SampleGeneration& generation, SystemLog& log)
    : generation_(generation), log_(log) {
  if (sd_event_new(&event_) < 0) throw std::runtime_error("no event loop can be made");
  blockTerminationSignals();
  if (!addSources()) {
    sd_event_unref(event_);
    throw std::runtime_error("the event loop takes no sources");
  }
}

bool LinuxRunLoop::addSources() {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    if (sd_event_add_signal(event_, nullptr, signal, onSignal, this) < 0) return false;
  }
  if (sd_event_add_defer(event_, &postedSource_, onPosted, this) < 0) return false;
  return sd_event_source_set_enabled(postedSource_, SD_EVENT_OFF) >= 0;
}

LinuxRunLoop::~LinuxRunLoop() {
  sd_event_source_disable_unref(postedSource_);
  sd_event_unref(event_);
}

void LinuxRunLoop::perform(const Task& task) {
  generation_.advance();
  try {
    if (task) task();
  } catch (const std::exception&) {
    // Its text may hold what was read from the desktop.
    log_.write("a task failed; the helper goes on");
  }
}

void LinuxRunLoop::post(Task task, TaskOrigin) {
  posted_.push_back(std::move(task));
  sd_event_source_set_enabled(postedSource_, SD_EVENT_ONESHOT);
}

int LinuxRunLoop::onPosted(sd_event_source*, void* loop) {
  static_cast<LinuxRunLoop*>(loop)->runPosted();
  return 0;
}

// One task a turn, so that timers and signals get theirs between tasks that post each other.
void LinuxRunLoop::runPosted() {
  if (posted_.empty()) return;
  const Task task = std::move(posted_.front());
  posted_.pop_front();
  if (!posted_.empty()) sd_event_source_set_enabled(postedSource_, SD_EVENT_ONESHOT);
  perform(task);
}

std::unique_ptr<Timer> LinuxRunLoop::scheduleAfter(Seconds delay, Task task, TaskOrigin) {
  return makeTimer(event_, *this, momentAfter(delay), 0, std::move(task));
}

std::unique_ptr<Timer> LinuxRunLoop::scheduleEvery(Seconds interval, Task task, TaskOrigin) {
  const Microseconds period = std::max<Microseconds>(microseconds(interval), 1'000);
  return makeTimer(event_, *this, momentAfter(interval), period, std::move(task));
}

std::unique_ptr<Timer> LinuxRunLoop::scheduleAt(Date date, Task task, TaskOrigin) {
  return makeTimer(event_, *this, momentAt(date), 0, std::move(task));
}

void LinuxRunLoop::sleep(Seconds duration) {
  waitForTerminationSignal(microseconds(duration));
  generation_.advance();
}

bool LinuxRunLoop::isTerminationPending() const {
  return kestro::isTerminationPending();
}

void LinuxRunLoop::setTerminationHandler(Task handler) {
  terminationHandler_ = std::move(handler);
}

int LinuxRunLoop::onSignal(sd_event_source*, const signalfd_siginfo*, void* loop) {
  static_cast<LinuxRunLoop*>(loop)->terminate();
  return 0;
}

void LinuxRunLoop::terminate() {
  if (!terminationHandler_) return stop(0);
  const Task handler = terminationHandler_;
  perform(handler);
}

int LinuxRunLoop::run() {
  const int result = sd_event_loop(event_);
  if (result >= 0) return result;
  log_.write("the event loop failed");
  return 1;
}

void LinuxRunLoop::stop(int exitStatus) {
  sd_event_exit(event_, exitStatus);
}

}  // namespace kestro
