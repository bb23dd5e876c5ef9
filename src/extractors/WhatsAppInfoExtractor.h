// WhatsApp: the open conversation, by the heading of its toolbar or its header button.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class WhatsAppInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "WhatsAppInfoExtractor";
  explicit WhatsAppInfoExtractor(Process& process) : process_(process) {}

  // Some 20 requests where the toolbar has the heading. Without it the whole window is searched:
  // one request more.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

}  // namespace kestro
