// Requests of other programs on a scripted desktop: steps make them. Main thread only.
#pragma once

#include "platform/ControlService.h"
#include "platform/Transcript.h"

namespace kestro {

class SceneControlService final : public ControlService {
 public:
  explicit SceneControlService(Transcript& transcript) : transcript_(transcript) {}

  void setDelegate(ControlDelegate* delegate) override { delegate_ = delegate; }
  // Nobody listens.
  void statusMayHaveChanged() override {}

  void startTimer(const std::string& title, const std::string& project) const {
    if (delegate_) record("startTimer", delegate_->startTimer(title, project));
  }
  void stopTimer() const {
    if (delegate_) record("stopTimer", delegate_->stopTimer());
  }
  // The process that got them is gone.
  void beginNextLife() { delegate_ = nullptr; }

 private:
  static const char* nameOf(ControlOutcome outcome) {
    switch (outcome) {
      case ControlOutcome::done:
        return "done";
      case ControlOutcome::noTimer:
        return "noTimer";
      case ControlOutcome::noDatabase:
        break;
    }
    return "noDatabase";
  }
  // The outcome, and what other programs are told from then on.
  void record(const char* request, ControlOutcome outcome) const {
    if (!transcript_.isActive()) return;
    const ControlStatus status = delegate_->controlStatus();
    PropertyListDictionary fields{{"request", request}, {"outcome", nameOf(outcome)}};
    fields.set("isTracking", status.isTracking);
    fields.setIfPresent("timerStarted", status.timerStarted);
    fields.set("isInCall", status.isInCall);
    transcript_.record("control", std::move(fields));
  }

  Transcript& transcript_;
  ControlDelegate* delegate_ = nullptr;
};

}  // namespace kestro
