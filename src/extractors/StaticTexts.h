// The static texts of a part of a page, which a web engine may cut into pieces.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "extractors/AccessibilityElement.h"

namespace kestro {

// The values that have a letter or a digit, of the static texts among the element and its
// descendants down to `maxDepth` levels below it, in pre-order. One request and one for each text,
// where the platform searches for itself.
std::vector<std::string> staticTexts(const AccessibilityElement& element, std::int64_t maxDepth);

// The same where a title may consist of signs alone ("???"): when none of the texts has a letter or
// digit they are all but icons.
std::vector<std::string> staticTextsOrSigns(const AccessibilityElement& element,
                                            std::int64_t maxDepth);

// The pieces of one line as a line: a blank where neither side of a joint has one. Absent for a
// line of nothing or of blanks.
std::optional<std::string> lineOf(const std::vector<std::string>& pieces);

}  // namespace kestro
