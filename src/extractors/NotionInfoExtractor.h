// Notion: the pages around the open one, from the line above it.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class NotionInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "NotionInfoExtractor";
  explicit NotionInfoExtractor(Process& process) : process_(process) {}

  // The page's web areas, one to six searches for the open page's entries, and for each entry tried
  // three an ancestor and three or four a crumb: 40 to 70 more where the platform searches in bulk.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

}  // namespace kestro
