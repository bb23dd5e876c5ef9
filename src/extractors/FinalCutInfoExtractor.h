// Final Cut: what is selected in the sidebar, behind what holds it: a library, then its event.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class FinalCutInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "FinalCutInfoExtractor";
  explicit FinalCutInfoExtractor(Process& process) : process_(process) {}

  // A request or two for each scroll area of the window; then, for the selected row and each row
  // that it lies in, two for its text where the platform searches in bulk and one for the way up.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

}  // namespace kestro
