#include "linux/process/StandardErrorLog.h"

#include <fmt/format.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_sinks.h>

namespace kestro {

StandardErrorLog::StandardErrorLog()
    : logger_(std::make_unique<spdlog::logger>("KestroHelper",
                                               std::make_shared<spdlog::sinks::stderr_sink_st>())) {
  logger_->set_pattern("%n[%P]: %v");
  logger_->flush_on(spdlog::level::info);
}

StandardErrorLog::~StandardErrorLog() = default;

void StandardErrorLog::write(std::string_view line) {
  logger_->info("{}", escapingControlCharacters(line));
}

std::string escapingControlCharacters(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte == '\n') {
      escaped += "\\n";
    } else if (byte == '\t') {
      escaped += "\\t";
    } else if (byte < 0x20 || byte == 0x7f) {
      escaped += fmt::format("\\x{:02x}", byte);
    } else {
      escaped += character;
    }
  }
  return escaped;
}

}  // namespace kestro
