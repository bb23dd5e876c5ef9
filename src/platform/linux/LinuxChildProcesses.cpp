#include "platform/linux/LinuxChildProcesses.h"

#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>
#include <thread>

namespace kestro {
namespace {

constexpr std::chrono::seconds longestWait{10};
constexpr std::chrono::milliseconds shortestPause{20};

// A child begins with no signal blocked and none ignored, whatever the run loop needs for itself.
class SpawnAttributes {
 public:
  SpawnAttributes() {
    posix_spawnattr_init(&attributes_);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    sigaddset(&signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
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

}  // namespace

std::variant<ExitStatus, LaunchFailure> LinuxChildProcesses::runAndWait(
    const std::string& path, const std::vector<std::string>& arguments) {
  std::vector<std::string> texts{path};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  const SpawnAttributes attributes;
  pid_t process = 0;
  const int error = posix_spawn(&process, path.c_str(), nullptr, attributes.get(),
                                argumentPointers(texts).data(), environ);
  if (error != 0) return LaunchFailure{std::generic_category().message(error)};
  if (!waitForEnd(process)) kill(process, SIGKILL);
  return reap(process);
}

}  // namespace kestro
