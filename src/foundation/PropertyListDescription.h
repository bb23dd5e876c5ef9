// Property lists as text for people, in the style of the designed platform's older text form.
#pragma once

#include <string>

#include "foundation/PropertyList.h"

namespace kestro {

// Dictionaries as { key = value; … } and lists as ( value, … ), a member a line, indented by four
// blanks a level. Booleans are 1 and 0; texts that are more than letters, digits and "._-/" stand
// in quotes; data is <hexadecimal>. Members keep their order.
std::string propertyListDescription(const PropertyList& value);

}  // namespace kestro
