#include "linux/shell/LinuxAlerts.h"

namespace kestro {

struct LinuxAlerts::Window {
  Alert alert;
  Completion completion;
  std::unique_ptr<DialogProcess> dialog;
};

namespace {

AlertAnswer lastAnswer(const Alert& alert) {
  return {alert.buttons.size() - 1, alert.suppressionIsChecked};
}

nlohmann::json requestOf(const Alert& alert) {
  nlohmann::json request{{"kind", "alert"},
                         {"message", alert.message},
                         {"informativeText", alert.informativeText},
                         {"buttons", alert.buttons}};
  if (alert.showsSuppression) request["suppression"] = {{"checked", alert.suppressionIsChecked}};
  return request;
}

// Absent: the message is none.
std::optional<AlertAnswer> answerIn(const nlohmann::json& message, const Alert& alert) {
  const auto button = message.find("button");
  if (button == message.end() || !button->is_number_unsigned()) return std::nullopt;
  AlertAnswer answer = lastAnswer(alert);
  const auto place = button->get<std::size_t>();
  if (place < alert.buttons.size()) answer.button = place;
  const auto suppress = message.find("suppress");
  if (alert.showsSuppression && suppress != message.end() && suppress->is_boolean()) {
    answer.suppressionIsChecked = suppress->get<bool>();
  }
  return answer;
}

}  // namespace

void LinuxAlerts::present(const Alert& alert, Completion completion) {
  auto window = std::make_shared<Window>(Window{alert, std::move(completion), nullptr});
  windows_.push_back(window);
  // The window's own callbacks do not keep it: it goes when it has answered.
  const std::weak_ptr<Window> known = window;
  window->dialog = std::make_unique<DialogProcess>(
      settings_, requestOf(alert),
      [this, known](const nlohmann::json& message) {
        const auto answering = known.lock();
        const auto answer =
            answering ? answerIn(message, answering->alert) : std::optional<AlertAnswer>();
        if (answer) end(answering, *answer);
      },
      [this, known] {
        if (const auto failing = known.lock()) end(failing, lastAnswer(failing->alert));
      });
}

void LinuxAlerts::end(const std::shared_ptr<Window>& window, const AlertAnswer& answer) {
  windows_.remove(window);
  // It is this window's process that calls: it goes when that is done.
  const Completion completion = std::move(window->completion);
  if (completion) completion(answer);
}

void LinuxAlerts::bringToFront() {
  for (const auto& window : windows_)
    window->dialog->bringToFront();
}

}  // namespace kestro
