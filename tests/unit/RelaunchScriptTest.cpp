#include "app/RelaunchScript.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <future>
#include <iterator>
#include <limits>

#include "FakePlatform.h"

namespace kestro {
namespace {

const std::string hostilePath =
    "/tmp/it's \"so\" $HOME ${x} $(echo no) `echo no` \\ \\\\ \\\" \\$ !! !x *~?[a] #&;|<>(){1..3}"
    "\t ä\xff\n-n\\\n\n";

TEST(RelaunchScript, OrdinaryPathsStandAsTheyAre) {
  EXPECT_EQ(
      relaunchScript({4711, Seconds(2.9), "/usr/bin/open", "/Applications/Kestro Helper.app"}),
      "/bin/sleep 2; /bin/kill -0 4711 >&/dev/null && /bin/kill 4711; (for i in {1..2}; do "
      "/bin/sleep 1; /bin/kill -0 4711 >&/dev/null || break; done; /bin/kill -0 4711 >&/dev/null "
      "&& /bin/kill -9 4711 && /bin/sleep 2; /usr/bin/open \"/Applications/Kestro Helper.app\") &");
}

TEST(RelaunchScript, DelaysAreBounded) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const std::array<std::pair<double, std::string>, 8> cases{{{0.99, "0"},
                                                             {-2.9, "0"},
                                                             {-infinity, "0"},
                                                             {std::nan(""), "0"},
                                                             {86399.9, "86399"},
                                                             {1e300, "86400"},
                                                             {infinity, "86400"},
                                                             {60, "60"}}};
  for (const auto& [delay, seconds] : cases) {
    const std::string script = relaunchScript({1, Seconds(delay), "/usr/bin/open", "/x"});
    EXPECT_TRUE(script.starts_with("/bin/sleep " + seconds + ";")) << delay;
    EXPECT_NE(script.find("{1.." + seconds + "}"), std::string::npos) << delay;
  }
}

TEST(RelaunchScript, QuotesWhatAShellWouldInterpret) {
  const auto end = [](const std::string& opener, const std::string& opened) {
    const std::string script = relaunchScript({1, Seconds(1), opener, opened});
    return script.substr(script.rfind("/bin/sleep 1; ") + 14);
  };
  const std::string open = "/usr/bin/open";
  EXPECT_EQ(end(open, R"(/a"b)"), R"(/usr/bin/open "/a\"b") &)");
  EXPECT_EQ(end(open, R"(/a\"$`)"), R"(/usr/bin/open "/a\\\"\$\`") &)");
  EXPECT_EQ(end(open, "/a!'\n{1..3}"), "/usr/bin/open \"/a!'\n{1..3}\") &");
  EXPECT_EQ(end(open, std::string("/a\0\"", 4)), "/usr/bin/open \"/a\") &");
  EXPECT_EQ(end("/o p$n", ""), R"("/o p\$n" "") &)");
}

// What a command prints until the last process that it started has closed its output.
std::string outputOf(const std::string& shell, const std::string& script) {
  setenv("KESTRO_TEST_SCRIPT", script.c_str(), 1);
  FILE* pipe = popen(("exec " + shell + " -c \"$KESTRO_TEST_SCRIPT\"").c_str(), "r");
  if (!pipe) return "no shell";
  std::string output;
  std::array<char, 4096> buffer{};
  while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe)) {
    output.append(buffer.data(), count);
  }
  pclose(pipe);
  return output;
}

TEST(RelaunchScript, ShellsReadThePathByteForByte) {
  const std::string script = relaunchScript({1, Seconds(1), "/usr/bin/open", hostilePath});
  const std::size_t begin = script.find("/usr/bin/open \"") + 13;
  const std::string word = script.substr(begin, script.rfind(") &") - begin);
  for (const char* shell : {"/bin/sh", "/bin/bash", "/bin/bash --posix"}) {
    EXPECT_EQ(outputOf(shell, "printf '%s|'" + word), hostilePath + "|") << shell;
  }
}

// Stands for the helper: what it does when asked to end, and how it ends.
struct Helper {
  std::string name;
  bool ignoresTermination;
  std::string sleeps;  // seconds
  int endingSignal;    // 0: it ends by itself
  Seconds opened;      // after the start of the script
};

// For the test's name in lists.
void PrintTo(const Helper& helper, std::ostream* stream) {
  *stream << helper.name;
}

[[noreturn]] void beHelper(const Helper& helper) {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  std::signal(SIGTERM, helper.ignoresTermination ? SIG_IGN : SIG_DFL);
  execl("/bin/sleep", "sleep", helper.sleeps.c_str(), static_cast<char*>(nullptr));
  _exit(127);
}

struct End {
  int status = 0;
  Date date;
};

End endOf(pid_t process) {
  End end;
  waitpid(process, &end.status, 0);  // at once: a zombie would still exist for the script
  end.date = std::chrono::system_clock::now();
  return end;
}

// Keeps, for each call, the nanoseconds of the time, and its arguments with a NUL after each.
std::filesystem::path makeOpener(const std::filesystem::path& directory) {
  auto opener = directory / "opener";
  std::ofstream(opener) << "#!/bin/bash\n{ date +%s%N; printf '%s\\0' \"$@\"; } >> '"
                        << (directory / "opened").string() << "'\n";
  permissions(opener, std::filesystem::perms::owner_all);
  return opener;
}

void expectTimeline(const Helper& helper) {
  constexpr Seconds delay{3};
  const fakes::TemporaryDirectory directory;
  const auto opener = makeOpener(directory.path());
  const Date start = std::chrono::system_clock::now();
  const pid_t process = fork();
  if (process == 0) beHelper(helper);
  ASSERT_GT(process, 0);
  auto ending = std::async(std::launch::async, endOf, process);
  outputOf("/bin/bash", relaunchScript({process, delay, opener.string(), hostilePath}));
  const End end = ending.get();
  EXPECT_EQ(WIFSIGNALED(end.status) ? WTERMSIG(end.status) : 0, helper.endingSignal);

  std::ifstream file(directory.path() / "opened");
  std::string time;
  std::getline(file, time);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), hostilePath + '\0');
  const Date opened{std::chrono::nanoseconds(std::strtoll(time.c_str(), nullptr, 10))};
  EXPECT_GE(opened, end.date);
  // Less than all turns of the loop, or another wait, would take.
  constexpr Seconds patience{1.5};
  EXPECT_GE(opened, start + std::chrono::round<Date::duration>(helper.opened));
  EXPECT_LE(opened, start + std::chrono::round<Date::duration>(helper.opened + patience));
}

class RelaunchScriptTimeline : public testing::TestWithParam<Helper> {};

TEST_P(RelaunchScriptTimeline, EndsTheHelperAndOpensItOnce) {
  expectTimeline(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Helpers, RelaunchScriptTimeline,
                         testing::Values(Helper{"EndedByItself", true, "0.3", 0, Seconds(4)},
                                         Helper{"Obeys", false, "30", SIGTERM, Seconds(4)},
                                         Helper{"Ignores", true, "30", SIGKILL, Seconds(9)}),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace kestro
