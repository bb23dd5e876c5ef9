// What the kernel tells about another process, from /proc. Costs no request to that process.
#pragma once

#include <optional>
#include <string>

#include "platform/Accessibility.h"

namespace kestro {

// The whole path of the executable file; absent when the process is gone or not the user's own. A
// file that was replaced since the start is named as it was.
std::optional<std::string> executablePath(ProcessIdentifier process);

// The name of the process's program as the kernel keeps it, of 15 characters at most.
std::optional<std::string> processName(ProcessIdentifier process);

// Absent when the process is gone or has none.
std::optional<ProcessIdentifier> parentProcess(ProcessIdentifier process);

// The process that has this identifier in a namespace of its own (a sandbox) and this name, an
// empty one for any; absent when there is none, or it is not the user's own. Looks at every process
// of the machine.
std::optional<ProcessIdentifier> processInNamespace(ProcessIdentifier inside,
                                                    const std::string& name);

// Whether the process is stopped, by a signal or a debugger, and so can answer nothing.
bool isStopped(ProcessIdentifier process);

}  // namespace kestro
