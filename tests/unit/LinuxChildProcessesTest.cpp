#include "linux/process/LinuxChildProcesses.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <iterator>
#include <thread>

#include "FakePlatform.h"
#include "linux/process/RelaunchShell.h"

namespace kestro {
namespace {

TEST(LinuxChildProcesses, TellsHowAProgramEnded) {
  LinuxChildProcesses processes;
  const auto code = [&](const std::string& script) {
    return std::get<ExitStatus>(processes.runAndWait("/bin/sh", {"-c", script})).code;
  };
  EXPECT_EQ(code("exit 3"), 3);
  EXPECT_EQ(code("kill -TERM $$"), 128 + 15);
  EXPECT_TRUE(std::holds_alternative<LaunchFailure>(processes.runAndWait("/no/such", {})));
}

bool becomesTrue(const std::function<bool()>& condition) {
  for (int turn = 0; turn < 500; ++turn) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

// What the program has written to the file that it makes last.
std::string awaited(const std::filesystem::path& file) {
  becomesTrue([&] { return exists(file); });
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// Starts a shell script that makes the file $1 of "$1.new", in a process that then ends.
void startInProcessThatEnds(const std::string& script, const std::filesystem::path& file) {
  const pid_t helper = fork();
  if (helper == 0) {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGHUP, SIG_IGN);
    sigset_t blocked;
    sigfillset(&blocked);
    sigprocmask(SIG_SETMASK, &blocked, nullptr);
    LinuxChildProcesses processes;
    const auto failure = processes.startDetached("/bin/bash", {"-c", script, "sh", file.string()});
    _exit(failure ? 1 : 0);
  }
  int status = -1;
  waitpid(helper, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST(LinuxChildProcesses, DetachedOnesOutliveTheHelperAndWriteFreely) {
  const fakes::TemporaryDirectory directory;
  const auto file = directory.path() / "result";
  // More than fits into a pipe, while the helper lives and after it has gone.
  startInProcessThatEnds(
      "head -c 1000000 /dev/zero >&2; sleep 0.2; echo text >&2; printf 'alive' >\"$1.new\"; "
      "mv \"$1.new\" \"$1\"",
      file);
  EXPECT_EQ(awaited(file), "alive");
}

TEST(LinuxChildProcesses, DetachedOnesTakeNothingOfTheHelperWithThem) {
  std::array<int, 2> inheritable{};
  ASSERT_EQ(pipe(inheritable.data()), 0);
  const fakes::TemporaryDirectory directory;
  const auto file = directory.path() / "result";
  // The signals are those of a program that bash starts: it hands on what it was given itself.
  // Signals from 32 on are the C library's own.
  startInProcessThatEnds(
      R"(exec 9>"$1.new"
         for f in 0 1 2 3 4 5 6 7 8; do [ -e /proc/$$/fd/$f ] && printf '%s ' $f >&9; done
         [ -p /proc/$$/fd/2 ] && printf 'pipe ' >&9
         read -r _ _ _ _ _ session _ </proc/$$/stat
         [ "$session" = $$ ] && printf 'leader ' >&9
         for set in $(sed -nE 's/^Sig(Blk|Ign):\s*/0x/p' /proc/self/status); do
           printf '%x ' $((set & 0x7fffffff)) >&9
         done
         mv "$1.new" "$1")",
      file);
  for (const int end : inheritable)
    close(end);
  EXPECT_EQ(awaited(file), "0 1 2 pipe leader 0 0 ");
}

TEST(LinuxChildProcesses, DetachedOnesAreNoZombies) {
  LinuxChildProcesses processes;
  ASSERT_FALSE(processes.startDetached("/bin/true", {}));
  EXPECT_TRUE(becomesTrue([] {
    siginfo_t information{};
    return waitid(P_ALL, 0, &information, WEXITED | WNOHANG | WNOWAIT) < 0 && errno == ECHILD;
  }));
}

TEST(LinuxChildProcesses, TellsWhyADetachedOneDoesNotStart) {
  const auto failure = LinuxChildProcesses().startDetached("/no/such", {"x"});
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->reason, "No such file or directory");
}

TEST(RelaunchShell, IsTheSystemsOnlyWhenThatIsBash) {
  const fakes::TemporaryDirectory directory;
  const auto link = [&](const std::string& name, const char* target) {
    create_symlink(target, directory.path() / name);
    return (directory.path() / name).string();
  };
  const std::string sh = link("sh", "/bin/bash");
  EXPECT_EQ(relaunchShell(sh), sh);
  EXPECT_EQ(relaunchShell(link("other", "/bin/sleep")), "/bin/bash");
  EXPECT_EQ(relaunchShell(link("bash", "/no/such")), "/bin/bash");
}

}  // namespace
}  // namespace kestro
