// Whether Microsoft Teams shows a call: by the call timer in a window's toolbar.
#pragma once

#include "product/Activity.h"

namespace kestro {

class Process;

// Looks at the activity's windows as the classic application shows calls, then as the new one does,
// for which accessibility is switched on. Some ten requests a window for each. An absent window
// title is filled from a page's.
bool hasTeamsCallWindow(Process& process, Activity& activity);

}  // namespace kestro
