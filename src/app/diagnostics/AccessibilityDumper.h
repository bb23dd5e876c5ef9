// One-shot diagnostics that the command line asks for (docs/diagnostics.md): what accessibility
// shows of one application, and a copy of its icon. Both print to standard output and return;
// nothing else of the helper runs meanwhile. Main thread only.
#pragma once

#include <optional>
#include <string>

namespace kestro {

class Process;

class AccessibilityDumper {
 public:
  // Prints the element trees of the windows of the first running application with this identifier,
  // or with a query the elements in them whose summary contains it, and what the application's
  // extractor makes of them. Says so when there is no such application.
  //
  // Some twelve requests for each element of a tree, more for each that a search examines; each
  // tree is bounded by mostElementsExamined.
  static void dumpWindowsForApplicationWithBundleIdentifier(
      Process& process, const std::string& bundleIdentifier,
      const std::optional<std::string>& searchQuery);

  // Copies the icon file of an application into Kestro/AppIcons in the user's documents. Prints one
  // line when that cannot be done, nothing when it is done.
  static void dumpIconForApplicationWithPossibleBundleIdentifier(
      Process& process, const std::string& possibleBundleIdentifier);
};

}  // namespace kestro
