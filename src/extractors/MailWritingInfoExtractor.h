// The platform's mail application: sender and recipients of a message being written.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class MailWritingInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "MailWritingInfoExtractor";
  explicit MailWritingInfoExtractor(Process& process) : process_(process) {}

  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

}  // namespace kestro
