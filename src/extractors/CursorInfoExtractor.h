// Cursor: the open chat and its section of the sidebar, where no file is in front.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class CursorInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "CursorInfoExtractor";
  explicit CursorInfoExtractor(Process& process) : process_(process) {}

  // Nothing where a file is in front. Otherwise, where the platform searches for itself, some five
  // requests for the title, three for the sidebar and two for each level from an entry up to its
  // section; entries of the same name cost that again.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

}  // namespace kestro
