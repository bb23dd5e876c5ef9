// UTF-8 as it comes from other programs.
#pragma once

#include <string>
#include <string_view>

namespace kestro {

bool isValidUtf8(std::string_view text);
std::string utf8FromLatin1(std::string_view text);
// Control characters, those between 0x80 and 0x9f as well, become blanks: they could do things
// where a title is shown. The text must be UTF-8.
std::string withoutControlCharacters(std::string_view text);

}  // namespace kestro
