// Letter case by Unicode's rules, the same in every locale.
#pragma once

#include <string>
#include <string_view>

namespace kestro {

// The text in lower case. Bytes that are not UTF-8 become U+FFFD.
std::string lowercased(std::string_view text);

}  // namespace kestro
