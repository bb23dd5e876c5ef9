// Whether the text of a property list can be parsed without exhausting memory or stack: the library
// follows nesting by recursion, when it parses or when it frees. Looks at the form only.
#pragma once

#include <string_view>

namespace kestro {

// At most this many dictionaries and lists in each other, and this many values in all.
constexpr int deepestPropertyList = 100;
constexpr std::size_t largestPropertyList = 1'000'000;

// False as well for what is no property list.
bool isXmlPropertyListWithinBounds(std::string_view text);
bool isBinaryPropertyListWithinBounds(std::string_view bytes);

}  // namespace kestro
