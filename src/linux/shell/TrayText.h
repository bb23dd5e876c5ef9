// Texts of the status item.
#pragma once

#include <optional>
#include <string>

namespace kestro {

// The text without control characters; one that is wider than the bound is cut in its middle, where
// "…" stands then. The width is estimated, since panels choose the font: 7 points a character, 13 a
// wide one (East Asian scripts, emoji). Absent: no bound.
std::string trayText(const std::string& text, std::optional<double> maxWidth);

}  // namespace kestro
