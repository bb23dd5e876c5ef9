// What the kernel tells about another process, from /proc. Costs no request to that process.
#pragma once

#include <optional>
#include <string>

#include "platform/Accessibility.h"

namespace kestro {

// The whole path of the executable file; absent when the process is gone or not the user's own. A
// file that was replaced since the start is named as it was.
std::optional<std::string> executablePath(ProcessIdentifier process);

// Whether the process is stopped, by a signal or a debugger, and so can answer nothing.
bool isStopped(ProcessIdentifier process);

}  // namespace kestro
