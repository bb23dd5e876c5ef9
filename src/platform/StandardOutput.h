// What diagnostics print, for the person who started the process with their switch. Main thread
// only.
#pragma once

#include <string_view>

namespace kestro {

class StandardOutput {
 public:
  virtual ~StandardOutput() = default;
  // The text and a line feed; the text may hold line feeds itself.
  virtual void printLine(std::string_view text) = 0;
};

}  // namespace kestro
