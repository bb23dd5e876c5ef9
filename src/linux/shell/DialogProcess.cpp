#include "linux/shell/DialogProcess.h"

namespace kestro {
namespace {

// Bytes that are not UTF-8 become U+FFFD.
std::string lineOf(const nlohmann::json& message) {
  return message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

DialogProcess::DialogProcess(const DialogSettings& settings, nlohmann::json request,
                             Message message, Failed failed)
    : message_(std::move(message)), failed_(std::move(failed)) {
  request["language"] = settings.language;
  if (const auto isDark = settings.appearance.isDark()) request["dark"] = *isDark;
  const auto end = [this, alive = std::weak_ptr(isAlive_)] {
    if (alive.expired()) return;
    const Failed call = failed_;
    call();
  };
  process_ = LineProcess::start(
      settings.runLoop, settings.program, [this](const std::string& line) { take(line); }, end);
  if (process_) {
    process_->send(lineOf(request));
    return;
  }
  settings.log.write("a window cannot be shown: " + settings.program + " does not start");
  settings.runLoop.post(end);
}

DialogProcess::~DialogProcess() = default;

void DialogProcess::send(const nlohmann::json& message) {
  if (process_) process_->send(lineOf(message));
}

// A line that is no JSON object says nothing.
void DialogProcess::take(const std::string& line) {
  const auto json = nlohmann::json::parse(line, nullptr, /*allow_exceptions=*/false);
  if (!json.is_object()) return;
  const Message call = message_;
  call(json);
}

}  // namespace kestro
