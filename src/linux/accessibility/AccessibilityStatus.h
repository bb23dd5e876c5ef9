// The session's accessibility switch and the address of its accessibility bus, asked on the session
// bus. Main thread only.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "linux/process/BackOff.h"
#include "linux/process/Patience.h"
#include "linux/session/Bus.h"
#include "platform/SystemLog.h"

namespace kestro {

class AccessibilityStatus {
 public:
  AccessibilityStatus(const Patience& patience, SystemLog& log) : patience_(patience), log_(log) {}

  // Absent when there is no session bus, or nobody there offers accessibility.
  std::optional<std::string> busAddress();

  // Whether applications are told that something reads their trees. Asked again after ten seconds.
  bool isEnabled();
  // Tells them, when that is not yet so. Never touches the switch for screen readers: several
  // desktops start one for it.
  void enable();

 private:
  bool isConnected();
  void noteFailure(int result);
  void noteSilence(int result);

  const Patience& patience_;
  SystemLog& log_;
  BackOff backOff_{std::chrono::seconds(1), std::chrono::seconds(60)};
  bool hasLoggedAbsence_ = false;
  BusPointer bus_;
  bool isEnabled_ = false;
  std::chrono::steady_clock::time_point asked_{};
};

}  // namespace kestro
