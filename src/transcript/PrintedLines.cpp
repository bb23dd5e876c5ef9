#include "transcript/PrintedLines.h"

namespace kestro {

void PrintedLines::printLine(std::string_view text) {
  if (stream_) *stream_ << text << std::endl;
  if (!transcript_.isActive()) return;
  while (true) {
    const auto end = text.find('\n');
    transcript_.record("print", {{"text", text.substr(0, end)}});
    if (end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

}  // namespace kestro
