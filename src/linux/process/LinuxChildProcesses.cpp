#include "linux/process/LinuxChildProcesses.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>
#include <thread>

#include "linux/process/SpawnAttributes.h"

namespace kestro {
namespace {

constexpr std::chrono::seconds longestWait{10};
constexpr std::chrono::milliseconds shortestPause{20};

// A pipe that nobody reads and that hurts no writer: it is opened for reading as well, so that it
// never breaks, and when it is full, writing fails instead of waiting.
class UnreadPipe {
 public:
  UnreadPipe() {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
    const std::string file = "/proc/self/fd/" + std::to_string(ends[1]);
    descriptor_ = open(file.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    for (const int end : ends)
      close(end);
  }
  ~UnreadPipe() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  UnreadPipe(const UnreadPipe&) = delete;
  UnreadPipe& operator=(const UnreadPipe&) = delete;

  int descriptor() const { return descriptor_; }  // -1: none can be made

 private:
  int descriptor_ = -1;
};

// What becomes of the helper's descriptors: standard error is replaced, and of the rest the child
// gets nothing, those that a library has opened without O_CLOEXEC included.
class DetachedFileActions {
 public:
  explicit DetachedFileActions(int standardError) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_adddup2(&actions_, standardError, STDERR_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
  }
  ~DetachedFileActions() { posix_spawn_file_actions_destroy(&actions_); }
  DetachedFileActions(const DetachedFileActions&) = delete;
  DetachedFileActions& operator=(const DetachedFileActions&) = delete;

  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

// Without descriptors for processes its end is looked for, at intervals. Leaves it to be reaped.
bool waitForEndByAsking(pid_t process) {
  const auto deadline = std::chrono::steady_clock::now() + longestWait;
  while (std::chrono::steady_clock::now() < deadline) {
    siginfo_t information{};
    const int result =
        waitid(P_PID, static_cast<id_t>(process), &information, WEXITED | WNOHANG | WNOWAIT);
    if (result == 0 && information.si_pid == process) return true;
    std::this_thread::sleep_for(shortestPause);
  }
  return false;
}

// Waits for the process through a descriptor of it. False when the time is over.
bool waitForEnd(pid_t process) {
  const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
  if (descriptor < 0) return waitForEndByAsking(process);
  pollfd entry{descriptor, POLLIN, 0};
  const auto deadline = std::chrono::steady_clock::now() + longestWait;
  int ready = 0;
  do {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    ready = left.count() > 0 ? poll(&entry, 1, static_cast<int>(left.count())) : 0;
  } while (ready < 0 && errno == EINTR);
  close(descriptor);
  return ready != 0;
}

ExitStatus reap(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFSIGNALED(status)) return {128 + WTERMSIG(status)};
  return {WEXITSTATUS(status)};
}

std::vector<char*> argumentPointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts)
    pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

LaunchFailure failureOf(int error) {
  return {std::generic_category().message(error)};
}

// The process, or why there is none. `actions` may be null.
std::variant<pid_t, LaunchFailure> spawn(const std::string& path,
                                         const std::vector<std::string>& arguments,
                                         const SpawnAttributes& attributes,
                                         const posix_spawn_file_actions_t* actions) {
  std::vector<std::string> texts{path};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  pid_t process = 0;
  const int error = posix_spawn(&process, path.c_str(), actions, attributes.get(),
                                argumentPointers(texts).data(), environ);
  if (error != 0) return failureOf(error);
  return process;
}

// Without a thread to be had it stays a zombie until the helper ends, which harms nobody.
void reapWhenItEnds(pid_t process) {
  try {
    std::thread([process] { reap(process); }).detach();
  } catch (const std::system_error&) {
  }
}

}  // namespace

std::variant<ExitStatus, LaunchFailure> LinuxChildProcesses::runAndWait(
    const std::string& path, const std::vector<std::string>& arguments) {
  const auto started = spawn(path, arguments, SpawnAttributes(), nullptr);
  if (const auto* failure = std::get_if<LaunchFailure>(&started)) return *failure;
  const pid_t process = std::get<pid_t>(started);
  if (!waitForEnd(process)) kill(process, SIGKILL);
  return reap(process);
}

std::optional<LaunchFailure> LinuxChildProcesses::startDetached(
    const std::string& path, const std::vector<std::string>& arguments) {
  const UnreadPipe standardError;
  if (standardError.descriptor() < 0) return failureOf(errno);
  const DetachedFileActions actions(standardError.descriptor());
  const auto started = spawn(path, arguments, SpawnAttributes(POSIX_SPAWN_SETSID), actions.get());
  if (const auto* failure = std::get_if<LaunchFailure>(&started)) return *failure;
  reapWhenItEnds(std::get<pid_t>(started));
  return std::nullopt;
}

}  // namespace kestro
