#include "scene/RemovalAtSignal.h"

#include <csignal>
#include <system_error>
#include <utility>

namespace kestro {
namespace {

constexpr int noLongerNeeded = SIGUSR2;

sigset_t awaitedSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, noLongerNeeded})
    sigaddset(&signals, signal);
  return signals;
}

void removeAtSignal(const std::filesystem::path& directory) {
  const sigset_t signals = awaitedSignals();
  int signal = 0;
  if (sigwait(&signals, &signal) != 0 || signal == noLongerNeeded) return;
  std::error_code ignored;  // nobody is left to tell
  std::filesystem::remove_all(directory, ignored);
  // The process ends by the signal, as whoever sent it expects.
  std::signal(signal, SIG_DFL);
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  std::raise(signal);
}

}  // namespace

// Blocked in all threads, signals wait for the one that looks after them.
RemovalAtSignal::RemovalAtSignal(std::filesystem::path directory) {
  const sigset_t signals = awaitedSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  waiting_ = std::thread([directory = std::move(directory)] { removeAtSignal(directory); });
}

RemovalAtSignal::~RemovalAtSignal() {
  pthread_kill(waiting_.native_handle(), noLongerNeeded);
  waiting_.join();
  const sigset_t signals = awaitedSignals();
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

}  // namespace kestro
