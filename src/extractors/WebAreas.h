// The web content areas of a window: the pages that a browser or a web-view application shows.
#pragma once

#include <optional>

#include "extractors/AccessibilityElement.h"

namespace kestro {

// The web areas right below the window's scroll areas or, when there are none, the page at the
// window's centre (or at an offset from its top left corner, in points). With an activity whose
// window title is absent, the first non-empty title of a web area becomes that title.
//
// Costs a request for each child of the window and of its scroll areas; the second way costs five
// more and those of `outermostWebArea`.
AccessibilityElements webAreas(const AccessibilityElement& window, Activity* activity,
                               std::optional<double> offsetX = std::nullopt,
                               std::optional<double> offsetY = std::nullopt);

// The web area of the page that the element is part of: an embedded frame gives way to the page
// around it when that has an http or https address. Absent outside of pages. Looks at 100 ancestors
// a step and five enclosing web areas at most; two requests an ancestor.
std::optional<AccessibilityElement> outermostWebArea(const AccessibilityElement& element);

}  // namespace kestro
