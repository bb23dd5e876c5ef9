// A helper that is killed while it writes, by the real signal.
#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "FakePlatform.h"
#include "platform/Process.h"
#include "product/Activity.h"
#include "product/ActivityWriter.h"
#include "product/DatabaseWrapper.h"

namespace kestro {
namespace {

constexpr std::int64_t firstSecond = 1'772'442'000;

// Samples as fast as it can in virtual time and reports every second that is complete.
[[noreturn]] void writeUntilKilled(Platform& platform, fakes::ManualRunLoop& runLoop, int report) {
  Process process(platform);
  runLoop.setNow(Date(std::chrono::seconds(firstSecond)));
  ActivityWriter* writer = DatabaseWrapper::sharedInstance(process)->activityWriter();
  for (std::int64_t second = 0;; ++second) {
    ActivityDetails details;
    details.windowTitle = "title " + std::to_string(second / 3);
    writer->write(runLoop.now(), Activity({}, details));
    runLoop.advance(Seconds(1));
    if (write(report, &second, sizeof second) != sizeof second) _exit(1);
  }
}

// Kills the process after so many reports and returns the last second it reported.
std::int64_t killAfter(std::int64_t count, pid_t child, int reports) {
  std::int64_t last = -1;
  std::int64_t second = 0;
  while (last + 1 < count && read(reports, &second, sizeof second) == sizeof second) {
    last = second;
  }
  kill(child, SIGKILL);
  while (read(reports, &second, sizeof second) == sizeof second)
    last = second;
  waitpid(child, nullptr, 0);
  return last;
}

TEST(ActivityWriterKill, losesAtMostTheLastInterval) {
  std::mt19937 random(7);
  for (int round = 0; round < 15; ++round) {
    fakes::FakePlatform fake;
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      close(ends[0]);
      writeUntilKilled(fake.platform, fake.runLoop, ends[1]);
    }
    close(ends[1]);
    const std::int64_t last =
        killAfter(20 + static_cast<std::int64_t>(random() % 500), child, ends[0]);
    close(ends[0]);
    ASSERT_GE(last, 19) << "the child ended early";

    SQLite::Database database((fake.directory.path() / "Kestro.sqlite").string(),
                              SQLite::OPEN_READWRITE);
    EXPECT_EQ(database.execAndGet("PRAGMA integrity_check").getString(), "ok");
    EXPECT_GE(database.execAndGet("SELECT max(end) FROM activities").getDouble(),
              static_cast<double>(firstSecond + last - 10));
    EXPECT_EQ(database.execAndGet("SELECT sum(end - start) - max(end) + min(start) FROM activities")
                  .getDouble(),
              0);
  }
}

}  // namespace
}  // namespace kestro
