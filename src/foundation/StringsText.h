// Tables of texts in their written form: "key" = "value"; with /* */ and // comments.
#pragma once

#include <optional>
#include <string_view>

#include "foundation/PropertyList.h"

namespace kestro {

// Absent when the text is not in this form; nothing is taken from a table that breaks off. Knows
// the escapes \" \\ \n \t and \r. The last of several texts for one key counts.
std::optional<PropertyListDictionary> dictionaryFromStringsText(std::string_view text);

}  // namespace kestro
