#include "linux/process/LinuxRunLoop.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <string>

namespace kestro {
namespace {

void busyUntil(std::chrono::steady_clock::time_point end) {
  while (std::chrono::steady_clock::now() < end) {
  }
}

class KeepingLog final : public SystemLog {
 public:
  void write(std::string_view line) override { text += line; }
  std::string text;
};

class LinuxRunLoopTest : public testing::Test {
 protected:
  LinuxRunLoopTest() { pthread_sigmask(SIG_SETMASK, nullptr, &signals_); }
  ~LinuxRunLoopTest() override { pthread_sigmask(SIG_SETMASK, &signals_, nullptr); }

  sigset_t signals_{};
  KeepingLog log_;
  SampleGeneration generation_;
};

TEST_F(LinuxRunLoopTest, RunsTasksInOrderAndCancelsDestroyedTimers) {
  LinuxRunLoop linuxLoop(generation_, log_);
  RunLoop& loop = linuxLoop;
  std::string order;
  auto cancelled = loop.scheduleAfter(Seconds(0), [&] { order += "x"; });
  cancelled.reset();
  std::unique_ptr<Timer> ending = loop.scheduleAfter(Seconds(0.05), [&] { loop.stop(7); });
  int runs = 0;
  std::unique_ptr<Timer> repeated;
  repeated = loop.scheduleEvery(Seconds(0.001), [&] {
    order += "r";
    if (++runs == 3) repeated.reset();  // from inside its own task
  });
  loop.post([&] {
    order += "a";
    loop.post([&] { order += "c"; });
  });
  loop.post([&] { order += "b"; });
  const std::uint64_t before = generation_.current();
  EXPECT_EQ(loop.run(), 7);
  std::erase(order, 'r');
  EXPECT_EQ(order, "abc");
  EXPECT_EQ(runs, 3);
  EXPECT_GE(generation_.current(), before + 6);
}

TEST_F(LinuxRunLoopTest, GoesOnAfterATaskThatThrowsAndKeepsItsTextToItself) {
  LinuxRunLoop linuxLoop(generation_, log_);
  RunLoop& loop = linuxLoop;
  loop.post([] { throw std::runtime_error("a title"); });
  const auto timer = loop.scheduleAfter(Seconds(0.01), [&] { loop.stop(3); });
  EXPECT_EQ(loop.run(), 3);
  EXPECT_FALSE(log_.text.empty());
  EXPECT_EQ(log_.text.find("a title"), std::string::npos);
}

TEST_F(LinuxRunLoopTest, LeavesOutIntervalsThatAreOver) {
  LinuxRunLoop linuxLoop(generation_, log_);
  RunLoop& loop = linuxLoop;
  const auto begin = std::chrono::steady_clock::now();
  int runs = 0;
  const auto timer = loop.scheduleEvery(Seconds(0.01), [&] {
    // The first run takes longer than four intervals, which are then not made up for.
    busyUntil(begin + std::chrono::milliseconds(55));
    if (++runs == 2) loop.stop(0);
  });
  loop.run();
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(59));
}

TEST_F(LinuxRunLoopTest, HandsSignalsToTheTerminationHandler) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    LinuxRunLoop linuxLoop(generation_, log_);
    RunLoop& loop = linuxLoop;
    loop.setTerminationHandler([&] { loop.post([&] { loop.stop(3); }); });
    kill(getpid(), signal);
    EXPECT_EQ(loop.run(), 3);
  }
  LinuxRunLoop unhandled(generation_, log_);
  kill(getpid(), SIGTERM);
  EXPECT_EQ(unhandled.run(), 0);
}

TEST_F(LinuxRunLoopTest, RunsTasksAtDatesAndNotBefore) {
  LinuxRunLoop linuxLoop(generation_, log_);
  RunLoop& loop = linuxLoop;
  const Date date = std::chrono::system_clock::now() + std::chrono::milliseconds(50);
  std::string order;
  const auto never = loop.scheduleAt(Date::max(), [&] { order += "x"; });
  auto cancelled = loop.scheduleAt(date, [&] { order += "x"; });
  cancelled.reset();
  const auto atDate = loop.scheduleAt(date, [&] { loop.stop(0); });
  const auto past = loop.scheduleAt(Date(std::chrono::seconds(-1)), [&] { order += "p"; });
  loop.run();
  EXPECT_GE(std::chrono::system_clock::now(), date);
  EXPECT_EQ(order, "p");
}

TEST_F(LinuxRunLoopTest, SleepsUntilASignalAsksToTerminate) {
  using std::chrono::steady_clock;
  LinuxRunLoop linuxLoop(generation_, log_);
  RunLoop& loop = linuxLoop;
  loop.setTerminationHandler([&] { loop.stop(3); });
  Seconds undisturbed{};
  loop.post([&] {
    const auto begin = steady_clock::now();
    loop.sleep(Seconds(0.05));
    undisturbed = steady_clock::now() - begin;
    kill(getpid(), SIGTERM);
    loop.sleep(Seconds(1e300));
    loop.sleep(Seconds(-1));
  });
  EXPECT_EQ(loop.run(), 3);  // the signal is still there for the loop
  EXPECT_GE(undisturbed, Seconds(0.05));
}

}  // namespace
}  // namespace kestro
