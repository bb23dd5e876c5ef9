// The accessibility interface's attributes of AT-SPI objects. Main thread only.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "linux/accessibility/AtspiElement.h"
#include "linux/accessibility/AtspiRoles.h"
#include "linux/accessibility/AtspiWindows.h"
#include "linux/applications/ApplicationIdentity.h"
#include "platform/Accessibility.h"

namespace kestro {

class ElementAttributes {
 public:
  ElementAttributes(AtspiWindows& windows, AtspiApplications& applications, AtspiReader& reader,
                    ApplicationIdentity& identity)
      : windows_(windows), applications_(applications), reader_(reader), identity_(identity) {}

  // Of elements that are objects or a page's scroll area; attributeUnsupported for names that are
  // none of theirs.
  AccessibilityResult<AttributeValue> value(const AtspiElement& element,
                                            std::string_view attribute);
  AccessibilityResult<std::vector<std::string>> names(const AtspiElement& element);
  // Of lists of elements, without reading them where that can be.
  AccessibilityResult<std::int64_t> count(const AtspiElement& element, std::string_view attribute);
  // What is to be added to a toolkit's coordinates to have root coordinates.
  Point windowOffset(const AtspiElement& element);

 private:
  using Result = AccessibilityResult<AttributeValue>;
  using Reader = Result (ElementAttributes::*)(const AtspiElement&);
  struct Row {
    std::string_view name;
    Reader read;
    bool isOfWindows;  // only windows list it
  };
  static const Row rows[];

  Result role(const AtspiElement& element);
  Result subrole(const AtspiElement& element);
  Result roleDescription(const AtspiElement& element);
  Result title(const AtspiElement& element);
  Result description(const AtspiElement& element);
  Result help(const AtspiElement& element);
  Result elementValue(const AtspiElement& element);
  Result identifier(const AtspiElement& element);
  Result domIdentifier(const AtspiElement& element);
  Result domClassList(const AtspiElement& element);
  Result url(const AtspiElement& element);
  Result children(const AtspiElement& element);
  Result contents(const AtspiElement& element);
  Result parent(const AtspiElement& element);
  Result window(const AtspiElement& element);
  Result position(const AtspiElement& element);
  Result size(const AtspiElement& element);
  Result isModal(const AtspiElement& element);
  Result isFullScreen(const AtspiElement& element);
  Result isMinimized(const AtspiElement& element);
  Result isMain(const AtspiElement& element);
  Result document(const AtspiElement& element);
  Result isSelected(const AtspiElement& element);
  Result selectedRows(const AtspiElement& element);
  Result isEnabled(const AtspiElement& element);
  Result isFocused(const AtspiElement& element);

  Result pageScrollAreaValue(const AtspiElement& element, std::string_view attribute);
  AccessibilityResult<AtspiTraits> traits(const AtspiElement& element, AtspiRole role,
                                          bool needsAttributes);
  Result state(const AtspiElement& element, AtspiState state);
  Result objectAttribute(const AtspiElement& element, std::string_view name);
  Result valueOfRole(const AtspiElement& element, AtspiRole role);
  bool isNamedByDescription(const AtspiElement& element);
  struct Origin {
    std::string className;
    bool isPage = false;  // of a page, not of the browser's own controls
  };
  std::optional<Origin> chromiumOrigin(const AtspiObject& object);
  bool isOfChromiumPage(const AtspiObject& object);
  std::string viewClass(const AtspiObject& object);
  AccessibilityResult<std::string> wholeText(const AtspiObject& object, int& elementsLeft);
  AccessibilityResult<std::string> pageAddress(const AtspiObject& document);
  AccessibilityResult<Rect> bounds(const AtspiElement& element);
  Result elements(const AtspiElement& owner, const std::vector<AtspiObject>& objects) const;

  AtspiWindows& windows_;
  AtspiApplications& applications_;
  AtspiReader& reader_;
  ApplicationIdentity& identity_;
  std::map<AtspiObject, Origin> origins_;  // never change
  std::uint64_t originsOf_ = 0;
};

}  // namespace kestro
