// The live desktop has no editor window yet: each ends at once without saving. Main thread only.
#pragma once

#include "platform/RunLoop.h"
#include "platform/TimeEntryEditors.h"

namespace kestro {

class LinuxTimeEntryEditors final : public TimeEntryEditors {
 public:
  explicit LinuxTimeEntryEditors(RunLoop& runLoop) : runLoop_(runLoop) {}

  void present(const TimeEntryEditorContents&, Placement, Completion completion) override {
    runLoop_.post([completion = std::move(completion)] { completion(std::nullopt); });
  }

 private:
  RunLoop& runLoop_;
};

}  // namespace kestro
