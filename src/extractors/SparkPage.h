// Where Spark's page has what its extractor tells of: the composer, the sidebar and the open
// message.
#pragma once

#include "extractors/AccessibilityElement.h"

namespace kestro {

struct SparkComposer {
  std::vector<std::string> recipients;
  // The text of the first area that is not one for recipients; it may be the letter itself.
  std::optional<std::string> text;
};

// Absent when no message is being written.
std::optional<SparkComposer> sparkComposer(const AccessibilityElement& webArea);

// The name of the folder that is checked in the sidebar.
std::optional<std::string> sparkCurrentFolder(const AccessibilityElement& webArea);

// Whom the open message is from or went to; empty when none is open.
std::vector<std::string> sparkCorrespondents(const AccessibilityElement& webArea);

}  // namespace kestro
