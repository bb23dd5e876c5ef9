// Takes snapshots of the X server's windows: two round trips each under a window manager that keeps
// to EWMH, a few more without one, at most one snapshot in a sample. Main thread only.
#pragma once

#include "linux/process/SampleGeneration.h"
#include "linux/windows/x11/X11Connection.h"
#include "linux/windows/x11/X11Snapshot.h"

namespace kestro {

class X11Desktop {
 public:
  X11Desktop(SampleGeneration& generation, SystemLog& log)
      : generation_(generation), connection_(log) {}

  // The snapshot of the current sample; empty without an X server. Valid until the next call.
  const X11Snapshot& snapshot();

 private:
  SampleGeneration& generation_;
  X11Connection connection_;
  X11Snapshot snapshot_;
  std::uint64_t takenIn_ = 0;
};

}  // namespace kestro
