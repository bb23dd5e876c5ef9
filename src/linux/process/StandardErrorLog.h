// The system log of the live desktop: one line a message on standard error, which a service manager
// forwards to the journal. Main thread only.
#pragma once

#include <memory>
#include <string>

#include "platform/SystemLog.h"

namespace spdlog {
class logger;
}

namespace kestro {

class StandardErrorLog final : public SystemLog {
 public:
  StandardErrorLog();
  ~StandardErrorLog() override;

  // Control characters are written as escapes, so that a message stays one line.
  void write(std::string_view line) override;

 private:
  std::unique_ptr<spdlog::logger> logger_;
};

// The text with every control character as \n, \t or \xNN, and bytes that are not UTF-8 as they
// are.
std::string escapingControlCharacters(std::string_view text);

}  // namespace kestro
