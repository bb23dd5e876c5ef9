// One attempt to connect to the X server. xcb has no bound for it: a server that accepts and then
// says nothing would hold the caller for ever. So the attempt runs on a thread of its own, and what
// it yields is handed over on the main thread.
#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <memory>
#include <optional>

namespace kestro {

class X11ConnectionAttempt {
 public:
  struct Outcome {
    xcb_connection_t* connection = nullptr;  // the caller's; may be in error
    int screen = 0;
  };

  X11ConnectionAttempt();
  // Leaves a server that still says nothing to the thread, which ends with it.
  ~X11ConnectionAttempt();
  X11ConnectionAttempt(const X11ConnectionAttempt&) = delete;
  X11ConnectionAttempt& operator=(const X11ConnectionAttempt&) = delete;

  // Absent when the server has not answered by then. Yields the connection once.
  std::optional<Outcome> wait(std::chrono::milliseconds longest);

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace kestro
