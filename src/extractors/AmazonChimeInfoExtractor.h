// Amazon Chime: the texts that head the open conversation.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class AmazonChimeInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "AmazonChimeInfoExtractor";
  explicit AmazonChimeInfoExtractor(Process& process) : process_(process) {}

  // A request for each child on the way, and one more for each text.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

}  // namespace kestro
