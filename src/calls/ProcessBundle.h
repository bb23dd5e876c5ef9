// The application around a process: helper processes lie inside their application's bundle.
#pragma once

#include "platform/Workspace.h"

namespace kestro {

class Process;

// By the last ".app" in the path of the executable. Both fields are absent when there is no path,
// no
// ".app" in it, or no bundle there. The name is without invisible control characters.
ApplicationBundle bundleAroundProcess(Process& process, ProcessIdentifier pid);

}  // namespace kestro
