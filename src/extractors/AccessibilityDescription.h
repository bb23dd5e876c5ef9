// Elements and their subtrees as text, for diagnostics.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "extractors/AccessibilityElement.h"

namespace kestro {

enum class SummaryForm { brief, full };

// One line of key='value' pairs; attributes that are absent or empty are left out. The full form
// goes on with every further attribute that the element reports. About a dozen requests, and one
// more for each further attribute.
std::string attributeSummary(const AccessibilityElement& element, SummaryForm form);

// The brief summaries of the element and its descendants down to `depth` levels below it, indented;
// absent when `depth` is negative. Ends after `mostElementsExamined`.
std::optional<std::string> treeDescription(const AccessibilityElement& element, std::int64_t depth);
// The same, but it ends after `elementsLeft`, from which it takes those that it described; absent
// too when none are left.
std::optional<std::string> treeDescription(const AccessibilityElement& element, std::int64_t depth,
                                           std::size_t& elementsLeft);

}  // namespace kestro
