// The signals that ask the helper to end: SIGTERM, SIGINT, SIGHUP. They are blocked, and the run
// loop reads them; whoever waits elsewhere looks after them, so that no wait keeps the helper from
// ending.
#pragma once

#include <chrono>
#include <csignal>

namespace kestro {

// From here on they are pending instead of ending the process.
void blockTerminationSignals();
sigset_t terminationSignalSet();

// Whether one has come that the run loop has not read yet. No other process is to be waited for
// then.
bool isTerminationPending();

// A wait that must notice such a signal is cut into turns of at most this length.
constexpr std::chrono::milliseconds longestWaitingTurn{50};

}  // namespace kestro
