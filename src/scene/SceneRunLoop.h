// The main run loop in virtual time. Events happen in the order in which they are due; scripted
// ones come before timers due at the same moment. A task that lets time pass makes later ones late
// and never changes their order. Main thread only.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/RunLoop.h"
#include "platform/SystemLog.h"
#include "scene/SceneClock.h"

namespace kestro {

class SceneRunLoop final : public RunLoop {
 public:
  struct ScriptedEvent {
    Date due;
    Task task;
  };

  // `events` in order of time, all due before `end`. At `end` the helper is asked to terminate, and
  // a minute later it is stopped with status 1 if it is still there. So it is, with a line in the
  // log, when a million tasks and timers have run and the time stands still.
  SceneRunLoop(SceneClock& clock, SystemLog& log, std::vector<ScriptedEvent> events, Date end);
  ~SceneRunLoop() override;

  void post(Task task, TaskOrigin origin) override;
  std::unique_ptr<Timer> scheduleAfter(Seconds delay, Task task, TaskOrigin origin) override;
  std::unique_ptr<Timer> scheduleEvery(Seconds interval, Task task, TaskOrigin origin) override;
  std::unique_ptr<Timer> scheduleAt(Date date, Task task, TaskOrigin origin) override;
  void sleep(Seconds duration) override;
  // Requests are scripted events, which wait for the current task.
  bool isTerminationPending() const override { return false; }
  void setTerminationHandler(Task handler) override { terminationHandler_ = std::move(handler); }
  int run() override;
  void stop(int exitStatus) override { exitStatus_ = exitStatus; }

  // For scripted events: asks the running process life to end in order. Once in each life.
  void requestTermination();
  // As requestTermination, and another life is to follow.
  void requestRestart();

  // Forgets what the life that ended has left behind. True when another is to start, after the
  // scripted events up to its start have happened without a helper.
  bool beginNextLife();

 private:
  struct TimerEntry;
  class TimerHandle;
  using TimerKey = std::pair<Date, std::uint64_t>;

  struct PostedTask {
    Task task;
    TaskOrigin origin;
  };

  std::unique_ptr<Timer> schedule(Date due, Date::duration interval, Task task, TaskOrigin origin);
  void serveOne();
  void runPosted();
  void runScripted();
  void runTimer();
  void dropCancelledTimers();
  // False when too much has run at this moment; the loop is stopped then.
  bool makesProgress(TaskOrigin origin);
  void forgetLife();

  SceneClock& clock_;
  SystemLog& log_;
  std::vector<ScriptedEvent> events_;
  std::size_t nextEvent_ = 0;
  std::size_t eventsBeforeEnd_;
  std::deque<PostedTask> posted_;
  Date lastRun_ = Date::min();
  int runsAtThisMoment_ = 0;
  std::map<TimerKey, std::shared_ptr<TimerEntry>> timers_;
  std::uint64_t nextSequence_ = 0;
  Task terminationHandler_;
  std::optional<int> exitStatus_;
  bool isServing_ = false;
  bool isTerminating_ = false;
  bool isRestartRequested_ = false;
};

}  // namespace kestro
