// Takes the values out of AT-SPI's answers. A message of another shape gives `failure`; an error
// stays the error. Pure functions over messages.
#pragma once

#include <cstdint>

#include "linux/accessibility/AtspiReader.h"

namespace kestro {

AccessibilityResult<std::string> textOf(const AtspiReply& reply);
AccessibilityResult<std::string> textPropertyOf(const AtspiReply& reply);
AccessibilityResult<std::int32_t> integerPropertyOf(const AtspiReply& reply);
AccessibilityResult<double> realPropertyOf(const AtspiReply& reply);
AccessibilityResult<AtspiRole> roleOf(const AtspiReply& reply);
AccessibilityResult<AtspiStates> statesOf(const AtspiReply& reply);
// noValue when the answer names no object.
AccessibilityResult<AtspiObject> objectOf(const AtspiReply& reply);
AccessibilityResult<AtspiObject> objectPropertyOf(const AtspiReply& reply);
// Without those that name no object.
AccessibilityResult<std::vector<AtspiObject>> objectsOf(const AtspiReply& reply);
AccessibilityResult<AtspiAttributes> attributesOf(const AtspiReply& reply);
AccessibilityResult<std::vector<std::string>> textsOf(const AtspiReply& reply);
// noValue for an element that is shown nowhere.
AccessibilityResult<Rect> rectangleOf(const AtspiReply& reply);
AccessibilityResult<ProcessIdentifier> processOf(const AtspiReply& reply);
AccessibilityResult<bool> booleanOf(const AtspiReply& reply);
// The first object that the relation points to; noValue without one.
AccessibilityResult<AtspiObject> relationTargetOf(const AtspiReply& reply, std::uint32_t relation);

}  // namespace kestro
