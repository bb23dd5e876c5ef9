// What other programs are told about the helper, and what they may ask of it beside the scripting
// commands. Main thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "foundation/Date.h"

namespace kestro {

// Nothing of what the user does or calls things is in it.
struct ControlStatus {
  bool isTracking = false;
  std::optional<Date> pausedUntil;   // of a timed pause
  std::optional<Date> timerStarted;  // absent: no timer runs
  bool isInCall = false;

  bool operator==(const ControlStatus&) const = default;
};

enum class ControlOutcome { done, noTimer, noDatabase };

class ControlDelegate {
 public:
  virtual ~ControlDelegate() = default;

  virtual ControlStatus controlStatus() = 0;
  // Since midnight, local time. Zero without a database.
  virtual Seconds trackedTimeToday() = 0;
  // Empty texts: none given. A timer that runs is stopped and saved first.
  virtual ControlOutcome startTimer(const std::string& title, const std::string& project) = 0;
  // What ran becomes a time entry.
  virtual ControlOutcome stopTimer() = 0;
};

class ControlService {
 public:
  virtual ~ControlService() = default;

  // Null: nothing can be asked. The delegate must outlive the service or be replaced by null.
  virtual void setDelegate(ControlDelegate* delegate) = 0;
  // To be called when the status may have changed; those who listen hear of it when it has.
  virtual void statusMayHaveChanged() = 0;
};

}  // namespace kestro
