// Printing for the diagnostics of this folder.
#pragma once

#include <fmt/format.h>

#include <utility>

#include "platform/Process.h"
#include "platform/StandardOutput.h"

namespace kestro {

// One call of the line printer with the formatted text.
template <class... Arguments>
void printLine(Process& process, fmt::format_string<Arguments...> format,
               Arguments&&... arguments) {
  process.platform().standardOutput.printLine(
      fmt::format(format, std::forward<Arguments>(arguments)...));
}

}  // namespace kestro
