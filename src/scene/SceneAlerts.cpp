#include "scene/SceneAlerts.h"

#include <algorithm>

namespace kestro {
namespace {

PropertyListDictionary eventFields(const Alert& alert, const AlertAnswer& answer) {
  return {{"message", alert.message},
          {"informativeText", alert.informativeText},
          {"buttons", alert.buttons},
          {"suppression", PropertyListDictionary{{"shown", alert.showsSuppression},
                                                 {"checked", alert.suppressionIsChecked}}},
          {"answer", PropertyListDictionary{{"button", alert.buttons.at(answer.button)},
                                            {"suppress", answer.suppressionIsChecked}}}};
}

}  // namespace

SceneAlerts::SceneAlerts(const std::vector<SceneStep>& steps, Date start, const Clock& clock,
                         Transcript& transcript)
    : clock_(clock), transcript_(transcript) {
  for (const SceneStep& step : steps) {
    if (const auto* answer = std::get_if<AnswerAlertStep>(&step.event)) {
      answers_.push_back({start + std::chrono::round<std::chrono::microseconds>(step.at), *answer});
    }
  }
}

void SceneAlerts::present(const Alert& alert, Completion completion) {
  const AlertAnswer answer = nextAnswer(alert);
  if (transcript_.isActive()) transcript_.record("alert", eventFields(alert, answer));
  if (completion) completion(answer);
}

// An answer that names no button of this alert counts as none, and is used up.
AlertAnswer SceneAlerts::nextAnswer(const Alert& alert) {
  AlertAnswer answer{alert.buttons.size() - 1, alert.suppressionIsChecked};
  if (answers_.empty() || answers_.front().due > clock_.now()) return answer;
  const AnswerAlertStep given = std::move(answers_.front().answer);
  answers_.pop_front();
  if (given.button) {
    const auto named = std::ranges::find(alert.buttons, *given.button);
    if (named == alert.buttons.end()) return answer;
    answer.button = static_cast<std::size_t>(named - alert.buttons.begin());
  }
  if (given.isSuppressed) answer.suppressionIsChecked = *given.isSuppressed;
  return answer;
}

}  // namespace kestro
