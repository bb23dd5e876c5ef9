// Stands in the registry for an application whose extractor is not written yet. Writes nothing:
// such an application's activity is what the probe alone found.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class PlaceholderInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  explicit PlaceholderInfoExtractor(Process&) {}
  void writeDetailsForActivity(Activity&) override {}
};

// A registry entry under the name of the extractor that will take its place.
constexpr ExtractorClass placeholderFor(std::string_view name) {
  return {name, [](Process& process) -> KSApplicationInfoExtractor& {
            return process.shared<PlaceholderInfoExtractor>();
          }};
}

}  // namespace kestro
