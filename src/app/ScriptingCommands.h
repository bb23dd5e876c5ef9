// The commands of the scripting dictionary (resources/KestroHelper.sdef). Main thread only.
#pragma once

#include "foundation/PropertyList.h"

namespace kestro {

class KSHelperAppDelegate;

// Pauses tracking for the argument "fors", in seconds; without one, or with one that is no number
// or not positive, until tracking is resumed.
class KSPauseTrackingCommand {
 public:
  static void performDefaultImplementation(KSHelperAppDelegate& delegate,
                                           const PropertyListDictionary& evaluatedArguments);
};

class KSResumeTrackingCommand {
 public:
  static void performDefaultImplementation(KSHelperAppDelegate& delegate,
                                           const PropertyListDictionary& evaluatedArguments);
};

// Runs the command that this class implements; nothing for others.
void performScriptingCommand(KSHelperAppDelegate& delegate, const std::string& implementingClass,
                             const PropertyListDictionary& evaluatedArguments);

}  // namespace kestro
