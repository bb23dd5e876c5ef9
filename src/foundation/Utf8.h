// UTF-8 as it comes from other programs.
#pragma once

#include <string>
#include <string_view>

namespace kestro {

bool isValidUtf8(std::string_view text);
std::string utf8FromLatin1(std::string_view text);

}  // namespace kestro
