// The platform's mail application: sender and recipients of a message being written.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class MailWritingInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "MailWritingInfoExtractor";
  explicit MailWritingInfoExtractor(Process& process) : process_(process) {}

  // A few requests for a window that is no compose window; otherwise one for each header element
  // and token, and one more for each pop-up button.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

}  // namespace kestro
