// The clean-up that the probe gives titles before it returns an activity: markers of unsaved and
// edited documents, direction marks, and the message counts of two mail applications.
#pragma once

#include <array>

#include "foundation/RegularExpression.h"
#include "product/Activity.h"

namespace kestro {

class Process;

class WindowTitleCleanup {
 public:
  explicit WindowTitleCleanup(Process& process);

  // Works on `windowTitle` and `documentTitle`. Absent stays absent, and empty stays empty.
  void apply(Activity& activity) const;

 private:
  std::array<RegularExpression, 3> markers_;  // in order of application
  RegularExpression directionMark_;
  RegularExpression messageCount_;
};

}  // namespace kestro
