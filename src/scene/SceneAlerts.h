// Alerts of a scripted desktop: recorded, and answered at once by steps. Main thread only; what it
// refers to must outlive it.
#pragma once

#include <deque>

#include "platform/Alerts.h"
#include "platform/Transcript.h"
#include "scene/SceneClock.h"
#include "scene/SceneStep.h"

namespace kestro {

class SceneAlerts final : public Alerts {
 public:
  // Answers wait for the next alert from the time of their step on, also for one that comes up
  // while the helper starts.
  SceneAlerts(const std::vector<SceneStep>& steps, Date start, const Clock& clock,
              Transcript& transcript);

  void present(const Alert& alert, Completion completion) override;
  // None waits.
  void bringToFront() override {}

 private:
  struct TimedAnswer {
    Date due;
    AnswerAlertStep answer;
  };
  AlertAnswer nextAnswer(const Alert& alert);

  std::deque<TimedAnswer> answers_;
  const Clock& clock_;
  Transcript& transcript_;
};

}  // namespace kestro
