// Switching on the hidden accessibility tree of web-view applications, which show one only to
// assistive programs.
#pragma once

#include <string>

#include "extractors/AccessibilityElement.h"

namespace kestro {

class Activity;

// Whether the platform's defaults tool may be run to set the switch in the application's domain.
enum class DefaultsTool { allowed, forbidden };

// For the application of the activity's first window. Does nothing unless the product's preference
// advancedAccessibilityTrackingEnabled allows it. Where the tree is on already this costs two
// requests (the window's parent and the application's switch) and two reads of its defaults domain.
void enableEnhancedAccessibility(Process& process, const Activity& activity);

void enableEnhancedAccessibility(const AccessibilityElement& application,
                                 const std::string& bundleIdentifier, DefaultsTool defaultsTool);

}  // namespace kestro
