// Which Linux applications are the ones that the designed platform knows under a bundle identifier.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kestro {

// `name`: a desktop identifier without ".desktop", or the name of an executable file, in any letter
// case. Absent when the table has no row for it.
std::optional<std::string> bundleIdentifierForName(std::string_view name);

// Whether it is the name of a browser that the table has.
bool isNameOfBrowser(std::string_view name);

}  // namespace kestro
