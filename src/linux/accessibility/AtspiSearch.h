// Searches an application's tree by the application's own means (AT-SPI's Collection interface):
// one message instead of three for every element. Main thread only.
//
// What it finds is what reading one element after the other finds, but for three differences: an
// element that can be reached in two ways is found once, in its first place; lists of more than 250
// children are searched to their end; and where only attributes tell that an element matches, those
// of the first 1,000 candidates are read.
#pragma once

#include <set>
#include <vector>

#include "linux/accessibility/ElementAttributes.h"

namespace kestro {

// What the application is asked, and the conditions that it cannot judge, or not alone.
struct AtspiQuestion {
  AtspiMatchRule rule;
  std::vector<ElementCondition> unjudged;
};
AtspiQuestion questionFor(const std::vector<ElementCondition>& conditions);

class AtspiSearch {
 public:
  AtspiSearch(ElementAttributes& attributes, AtspiReader& reader)
      : attributes_(attributes), reader_(reader) {}

  // notImplemented where the application has no such search. One or two messages; one more for each
  // candidate that the application could not judge; one for each level above a found element.
  AccessibilityResult<std::vector<UIElement>> find(const AtspiElement& root,
                                                   const ElementSearch& search);

 private:
  // What is left to be looked for, and found so far.
  struct Progress {
    const ElementSearch& search;
    ProcessIdentifier process;
    AtspiQuestion question;
    std::vector<UIElement> found;
    std::set<AtspiObject> foundObjects;  // one can be reached in several ways

    bool isOver() const { return found.size() >= search.mostFound; }
  };

  void examine(const UIElement& element, Progress& progress);
  AccessibilityError searchPage(const AtspiObject& page, std::int64_t levels, Progress& progress);
  AccessibilityError searchBelow(const AtspiObject& top, std::int64_t levels, Progress& progress);
  void judge(const std::vector<AtspiObject>& candidates, const AtspiObject& top,
             std::int64_t levels, Progress& progress);
  bool meets(const AtspiElement& element, const std::vector<ElementCondition>& conditions);
  bool isWithin(const AtspiObject& object, const AtspiObject& top, std::int64_t levels);
  void prefetch(const std::vector<AtspiObject>& objects,
                const std::vector<ElementCondition>& conditions);

  ElementAttributes& attributes_;
  AtspiReader& reader_;
};

}  // namespace kestro
