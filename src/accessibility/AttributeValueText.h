// Attribute values as text, and texts as attribute values: pure functions, no requests.
#pragma once

#include <string>
#include <string_view>

#include "platform/AttributeValue.h"

namespace kestro {

// The value that a text stands for where an attribute now has the value `current`: a box of the
// same type read from its brief description (numbers that the text lacks are 0), the text itself
// where the current value is a text, else the number that the text begins with (0 without one).
AttributeValue valueFromText(std::string_view text, const AttributeValue& current);

// The generic description of a value that is neither a box, a list nor an element: texts and
// addresses as they are, numbers in their shortest form, booleans as 1 and 0, dates as
// "2026-03-02 09:00:00 +0000", data as "{length = 3, bytes = 0x010203}". Empty for the others.
std::string genericDescription(const AttributeValue& value);

}  // namespace kestro
