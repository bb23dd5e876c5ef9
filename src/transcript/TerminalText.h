// Texts of other applications, made safe for a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kestro {

// The text on one line: control characters, line separators and marks that reorder text become
// spaces, bytes that are not UTF-8 U+FFFD. Longer texts end in an ellipsis after `limit` code
// points.
std::string terminalText(std::string_view text, std::size_t limit);

}  // namespace kestro
