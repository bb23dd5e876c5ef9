// Texts for people at a terminal.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestro {

// Whether standard output may have colour: a terminal, and NO_COLOR is not set.
bool mayHaveColour();

enum class Emphasis { good, attention, faint, strong };
// The text in that colour, where standard output may have one.
std::string emphasized(std::string_view text, Emphasis emphasis);

// "1:05:09".
std::string clockDuration(double seconds);
// "1h 5m", "5m", "under 1m".
std::string shortDuration(double seconds);
// "14:05", with the date in front on another day than today.
std::string localTime(std::int64_t secondsSince1970);

// Text from anywhere, on one line and without anything that could steer the terminal.
std::string printable(std::string_view text);

}  // namespace kestro
