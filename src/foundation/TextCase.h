// Letters and their case by Unicode's rules, the same in every locale.
#pragma once

#include <string>
#include <string_view>

namespace kestro {

// The text in lower case. Bytes that are not UTF-8 become U+FFFD.
std::string lowercased(std::string_view text);

bool contains(std::string_view text, std::string_view part);

// False for texts that only decorate: punctuation, arrows, and the glyphs of icon fonts, which
// stand where no letters are.
bool hasLetterOrDigit(std::string_view text);

// Whether the text is made of glyphs of icon fonts and white space alone.
bool isIcon(std::string_view text);

}  // namespace kestro
