#include "linux/windows/x11/X11ConnectionAttempt.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace kestro {

struct X11ConnectionAttempt::Shared {
  std::mutex mutex;
  std::condition_variable finished;
  std::optional<Outcome> outcome;
  bool isAbandoned = false;
};

X11ConnectionAttempt::X11ConnectionAttempt() : shared_(std::make_shared<Shared>()) {
  const auto connect = [shared = shared_] {
    Outcome outcome;
    outcome.connection = xcb_connect(nullptr, &outcome.screen);
    const std::lock_guard lock(shared->mutex);
    if (shared->isAbandoned) return xcb_disconnect(outcome.connection);
    shared->outcome = outcome;
    shared->finished.notify_one();
  };
  try {
    std::thread(connect).detach();
  } catch (const std::system_error&) {
    connect();  // no thread to be had: better unbounded than blind
  }
}

X11ConnectionAttempt::~X11ConnectionAttempt() {
  const std::lock_guard lock(shared_->mutex);
  shared_->isAbandoned = true;
  if (shared_->outcome) xcb_disconnect(shared_->outcome->connection);
}

std::optional<X11ConnectionAttempt::Outcome> X11ConnectionAttempt::wait(
    std::chrono::milliseconds longest) {
  std::unique_lock lock(shared_->mutex);
  shared_->finished.wait_for(lock, longest, [&] { return shared_->outcome.has_value(); });
  return std::exchange(shared_->outcome, std::nullopt);
}

}  // namespace kestro
