// Web-view applications that show a page: its address and title.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class WebAreaURLInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "WebAreaURLInfoExtractor";
  explicit WebAreaURLInfoExtractor(Process& process) : process_(process) {}

  void writeDetailsForActivity(Activity& activity) override;

  // The web-address step, which other extractors use as well: the first page with an address among
  // the activity's windows gives `documentPath`, and the first title of a page in the windows up to
  // there `documentTitle`. May fill an absent `windowTitle`. Does not switch accessibility on.
  static void readWebAddress(Process& process, Activity& activity);

 private:
  Process& process_;
};

}  // namespace kestro
