// Stateless operations on accessibility elements: reading and writing attributes, geometry, and the
// texts that diagnostics print. A failed request yields an absent value, 0, false or a zero point,
// size or rectangle; nothing is reported. Each operation costs one to three requests unless it says
// otherwise.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/AttributeValue.h"

namespace kestro {

class Process;

enum class Verbosity { brief, verbose };

class UIElementUtilities {
 public:
  explicit UIElementUtilities(Process& process);

  // 0 when the platform reports an error. No request.
  ProcessIdentifier processIdentifierOfUIElement(const UIElement& element) const;
  std::optional<std::vector<std::string>> attributeNamesOfUIElement(const UIElement& element) const;
  std::optional<std::vector<std::string>> actionNamesOfUIElement(const UIElement& element) const;
  std::optional<std::string> descriptionOfAction(std::string_view action,
                                                 const UIElement& element) const;
  void performAction(std::string_view action, const UIElement& element) const;

  std::optional<AttributeValue> valueOfAttribute(std::string_view attribute,
                                                 const UIElement& element) const;
  std::optional<std::string> stringValueOfAttribute(std::string_view attribute,
                                                    const UIElement& element) const;
  // A number or a boolean, which counts as 1 or 0.
  std::optional<double> numberValueOfAttribute(std::string_view attribute,
                                               const UIElement& element) const;
  // A boolean, or a number, which is true unless it is zero.
  std::optional<bool> booleanValueOfAttribute(std::string_view attribute,
                                              const UIElement& element) const;
  bool canSetAttribute(std::string_view attribute, const UIElement& element) const;

  // Writes the text as a value of the kind that the attribute has now: a box read from its brief
  // description, the text itself, or else a number. Does nothing when there is no current value.
  // Whether the write succeeded is not known.
  void setStringValue(std::string_view text, std::optional<std::string_view> attribute,
                      const UIElement& element) const;
  void setNumberValue(const AttributeValue& value, std::string_view attribute,
                      const UIElement& element) const;

  std::optional<UIElement> parentOfUIElement(const UIElement& element) const;
  std::optional<std::string> roleOfUIElement(const UIElement& element) const;
  std::optional<std::string> titleOfUIElement(const UIElement& element) const;
  bool isApplicationUIElement(const UIElement& element) const;

  // From screen coordinates (origin at the bottom left, y upwards) to the accessibility interface's
  // (origin at the top left, y downwards), on the last screen that contains the point; (0, 0) when
  // none does.
  Point carbonScreenPointFromCocoaScreenPoint(Point point) const;
  // The same rectangle in the other of the two coordinate systems.
  Rect flippedScreenBounds(Rect bounds) const;
  // In screen coordinates; zero when position or size is missing.
  Rect frameOfUIElement(const UIElement& element) const;
  // In the accessibility interface's coordinates.
  Point originOfUIElement(const UIElement& element) const;
  Size sizeOfUIElement(const UIElement& element) const;

  // "AXValue???" for a value that is not a point, size, rectangle or range.
  static std::string stringDescriptionOfAXValue(const AttributeValue& value, Verbosity verbosity);
  // Absent for an absent value. An element costs two requests, any other value none.
  std::optional<std::string> descriptionOfValue(const std::optional<AttributeValue>& value,
                                                Verbosity verbosity) const;
  // Children and rows are counted, not read.
  std::optional<std::string> descriptionForUIElement(const UIElement& element,
                                                     std::string_view attribute,
                                                     Verbosity verbosity) const;
  // Descriptions from the outermost ancestor down to the element. Three requests an ancestor; the
  // walk ends after 100 of them and where the chain closes on itself.
  std::vector<std::string> lineageOfUIElement(const UIElement& element) const;
  std::string lineageDescriptionOfUIElement(const UIElement& element) const;
  // Lineage, attributes and actions, for diagnostics: two or three requests for every attribute.
  std::string stringDescriptionOfUIElement(const UIElement& element) const;
  std::string descriptionOfAXDescriptionOfUIElement(const UIElement& element) const;

 private:
  std::string descriptionOfElement(const UIElement& element) const;
  std::string genericDescriptionOfElement(const UIElement& element) const;
  std::string descriptionOfPart(const AttributeValue& value) const;
  std::string attributesDescription(const UIElement& element) const;
  std::string actionsDescription(const UIElement& element) const;

  Process& process_;
  Accessibility& accessibility_;
};

}  // namespace kestro
