// Texts in the X Consortium's Compound Text Encoding (CTEXT, version 1.1), in which old X clients
// give their windows' titles.
#pragma once

#include <string>
#include <string_view>

namespace kestro {

// The text as UTF-8. What stands in a character set that is not known, and what is cut off, becomes
// U+FFFD; directions of writing are left out.
std::string utf8FromCompoundText(std::string_view text);

}  // namespace kestro
