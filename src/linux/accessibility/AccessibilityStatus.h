// The session's accessibility switch and the address of its accessibility bus, asked on the session
// bus. Main thread only.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "linux/process/BackOff.h"
#include "linux/session/Bus.h"
#include "platform/SystemLog.h"

namespace kestro {

class AccessibilityStatus {
 public:
  explicit AccessibilityStatus(SystemLog& log) : log_(log) {}

  // Absent when there is no session bus, or nobody there offers accessibility.
  std::optional<std::string> busAddress();

  // Whether applications are told that something reads their trees. Asked again after ten seconds.
  bool isEnabled();
  // Tells them, when that is not yet so. Never touches the switch for screen readers: several
  // desktops start one for it.
  void enable();

  void setTimeout(std::chrono::microseconds timeout) { timeout_ = timeout; }

 private:
  bool isConnected();
  void noteFailure(int result);
  void noteSilence(int result);

  SystemLog& log_;
  std::chrono::microseconds timeout_{std::chrono::seconds(2)};
  BackOff backOff_{std::chrono::seconds(1), std::chrono::seconds(60)};
  bool hasLoggedAbsence_ = false;
  BusPointer bus_;
  bool isEnabled_ = false;
  std::chrono::steady_clock::time_point asked_{};
};

}  // namespace kestro
