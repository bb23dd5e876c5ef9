// Firefox and browsers built from it: private windows by their title, and the page's address.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class FirefoxInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "FirefoxInfoExtractor";
  explicit FirefoxInfoExtractor(Process& process);

  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
  std::optional<std::string> extraPrivateBrowsingSuffix_;
};

// Whether a window title is that of a private window. The extra suffix may be absent or empty.
bool isFirefoxPrivateTitle(std::string_view title, const std::optional<std::string>& extraSuffix);

}  // namespace kestro
