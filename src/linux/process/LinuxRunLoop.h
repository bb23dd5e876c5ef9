// The main run loop over sd-event. SIGTERM, SIGINT and SIGHUP ask the helper to terminate; they are
// blocked and read by the loop, so that no code runs in a signal handler. Main thread only.
#pragma once

#include <systemd/sd-event.h>

#include <deque>
#include <memory>

#include "linux/process/SampleGeneration.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"

namespace kestro {

class LinuxRunLoop final : public RunLoop {
 public:
  // Every task begins a new generation. Throws std::runtime_error without an event loop.
  LinuxRunLoop(SampleGeneration& generation, SystemLog& log);
  ~LinuxRunLoop() override;
  LinuxRunLoop(const LinuxRunLoop&) = delete;
  LinuxRunLoop& operator=(const LinuxRunLoop&) = delete;

  void post(Task task, TaskOrigin origin = TaskOrigin::here()) override;
  [[nodiscard]] std::unique_ptr<Timer> scheduleAfter(
      Seconds delay, Task task, TaskOrigin origin = TaskOrigin::here()) override;
  [[nodiscard]] std::unique_ptr<Timer> scheduleEvery(
      Seconds interval, Task task, TaskOrigin origin = TaskOrigin::here()) override;
  [[nodiscard]] std::unique_ptr<Timer> scheduleAt(Date date, Task task,
                                                  TaskOrigin origin = TaskOrigin::here()) override;
  // What is read from the desktop afterwards belongs to a new generation.
  void sleep(Seconds duration) override;
  bool isTerminationPending() const override;
  void setTerminationHandler(Task handler) override;
  int run() override;
  void stop(int exitStatus) override;

  // For those who have the loop serve a socket or a bus. Their callbacks call `perform`.
  sd_event* event() const { return event_; }
  // Runs one task as the loop does. An exception ends the task alone, and is logged: none may pass
  // through the event loop's C functions.
  void perform(const Task& task);

 private:
  static int onPosted(sd_event_source* source, void* loop);
  static int onSignal(sd_event_source* source, const signalfd_siginfo* signal, void* loop);
  bool addSources();
  void runPosted();
  void terminate();

  SampleGeneration& generation_;
  SystemLog& log_;
  sd_event* event_ = nullptr;
  sd_event_source* postedSource_ = nullptr;
  std::deque<Task> posted_;
  Task terminationHandler_;
};

}  // namespace kestro
