// The main run loop: the one thread on which everything above the platform runs. In a scene its
// time is virtual; live it also serves the desktop's sockets.
#pragma once

#include <functional>
#include <memory>

#include "foundation/Date.h"

namespace kestro {

// A scheduled task. Destroying it cancels what has not run yet.
class Timer {
 public:
  virtual ~Timer() = default;
};

// Where in the program something was handed to the run loop: a parameter that nobody gives, so that
// errors can name a timer. (Not std::source_location: clang 14 has none.)
struct TaskOrigin {
  const char* file;
  int line;

  static constexpr TaskOrigin here(const char* file = __builtin_FILE(),
                                   int line = __builtin_LINE()) {
    return {file, line};
  }
};

class RunLoop {
 public:
  using Task = std::function<void()>;

  virtual ~RunLoop() = default;

  // Runs `task` on the main loop as soon as the current task has returned, in order of posting.
  virtual void post(Task task, TaskOrigin origin = TaskOrigin::here()) = 0;
  // Runs `task` once after `delay`.
  [[nodiscard]] virtual std::unique_ptr<Timer> scheduleAfter(
      Seconds delay, Task task, TaskOrigin origin = TaskOrigin::here()) = 0;
  // Runs `task` after each `interval`, first after one interval. A run that is late is not made up
  // for: the next is due at the following multiple of the interval.
  [[nodiscard]] virtual std::unique_ptr<Timer> scheduleEvery(
      Seconds interval, Task task, TaskOrigin origin = TaskOrigin::here()) = 0;
  // Runs `task` once when the clock shows `date`: a clock that is set moves it. A date that has
  // passed is due at once.
  [[nodiscard]] virtual std::unique_ptr<Timer> scheduleAt(
      Date date, Task task, TaskOrigin origin = TaskOrigin::here()) = 0;

  // Keeps the main thread waiting, and with it everything else; nothing or less does not wait. Live
  // it returns early once a signal asks the helper to terminate. What falls due in a scene
  // meanwhile happens when the current task has returned.
  virtual void sleep(Seconds duration) = 0;

  // Whether somebody asks the helper to terminate while the current task still runs: a long one
  // gives up then.
  virtual bool isTerminationPending() const = 0;
  // What to do when the session, a signal or the scene's end asks the helper to terminate. The
  // handler ends the loop with `stop`, now or later; without one the loop ends with status 0.
  virtual void setTerminationHandler(Task handler) = 0;

  // Serves the loop until `stop`, and returns the status given there.
  virtual int run() = 0;
  virtual void stop(int exitStatus) = 0;
};

}  // namespace kestro
