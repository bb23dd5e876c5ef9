// Firefox and browsers built from it: private windows by their title, and the page's address.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class FirefoxInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "FirefoxInfoExtractor";
  explicit FirefoxInfoExtractor(Process& process);

  // Costs what switching accessibility on and the web-address step cost: some ten requests for a
  // page right below a scroll area.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
  std::optional<std::string> extraPrivateBrowsingSuffix_;
};

// Whether a window title is that of a private window. The extra suffix may be absent or empty.
bool isFirefoxPrivateTitle(std::string_view title, const std::optional<std::string>& extraSuffix);

}  // namespace kestro
