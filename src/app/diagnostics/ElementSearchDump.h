// The search of the window dump: elements whose summary contains a text, each with the way to it
// and the subtree below it. Made for one dump; main thread only.
#pragma once

#include <string>
#include <string_view>

namespace kestro {

class AccessibilityElement;

class ElementSearchDump {
 public:
  // `query`: a text that may stand anywhere in a summary, in any letter case, or name=value for the
  // pair that a summary has of these.
  explicit ElementSearchDump(std::string_view query);

  // Prints, under the label, what it finds in the tree from `root` down; nothing when that is
  // nothing. Examines mostElementsExamined at most, and prints no more than a few times as many: a
  // tree may lead back to itself.
  void printMatches(const AccessibilityElement& root, const std::string& label) const;

 private:
  std::string needle_;
};

}  // namespace kestro
