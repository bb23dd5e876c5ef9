// What most extractors come to: the path of the first window that has one.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "extractors/AccessibilityElement.h"

namespace kestro {

// From the general to the particular; empty: there is none.
using ContextPath = std::vector<std::string>;

// The path of the first of the activity's windows that has one becomes the activity's. The windows
// after it are not read; without a path nothing changes.
void writeFirstContextPath(Process& process, Activity& activity,
                           const std::function<ContextPath(const AccessibilityElement&)>& pathOf);

}  // namespace kestro
