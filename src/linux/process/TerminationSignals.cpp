#include "linux/process/TerminationSignals.h"

#include <algorithm>
#include <array>

namespace kestro {
namespace {

constexpr std::array terminationSignals{SIGTERM, SIGINT, SIGHUP};

}  // namespace

sigset_t terminationSignalSet() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : terminationSignals)
    sigaddset(&signals, signal);
  return signals;
}

void blockTerminationSignals() {
  const sigset_t signals = terminationSignalSet();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

bool isTerminationPending() {
  sigset_t pending;
  if (sigpending(&pending) != 0) return false;
  return std::ranges::any_of(terminationSignals,
                             [&](int signal) { return sigismember(&pending, signal) == 1; });
}

}  // namespace kestro
