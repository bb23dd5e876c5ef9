// Window titles made of parts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestro {

// The parts between the separators, empty ones included; one part when there is no separator.
std::vector<std::string> titleParts(std::string_view title, std::string_view separator);

// Whether nothing remains of a title but parts without a text.
bool areEmpty(const std::vector<std::string>& parts);

// The text without any occurrence of the part.
std::string withoutEvery(std::string text, std::string_view part);

// The parts with the separator between them.
std::string joined(const std::vector<std::string>& parts, std::string_view separator);

}  // namespace kestro
