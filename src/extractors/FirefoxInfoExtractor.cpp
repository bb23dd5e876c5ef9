#include "extractors/FirefoxInfoExtractor.h"

#include <algorithm>
#include <array>

#include "extractors/EnhancedAccessibility.h"
#include "extractors/WebAreaURLInfoExtractor.h"
#include "foundation/ComparableText.h"
#include "platform/UserDefaults.h"

namespace kestro {

FirefoxInfoExtractor::FirefoxInfoExtractor(Process& process)
    : process_(process),
      extraPrivateBrowsingSuffix_(process.platform().defaults.standard().string(
          "FirefoxInfoExtractor_extraPrivateBrowsingSuffix")) {}

bool isFirefoxPrivateTitle(std::string_view title, const std::optional<std::string>& extraSuffix) {
  constexpr std::array<std::string_view, 3> suffixes{"(Private Browsing)", "Private Browsing",
                                                     "Privater Modus"};
  const std::string whole = comparableText(title);
  const auto endsTitle = [&](std::string_view suffix) { return whole.ends_with(suffix); };
  if (std::ranges::any_of(suffixes, endsTitle)) return true;
  const std::string extra = comparableText(extraSuffix.value_or(""));
  return !extra.empty() && endsTitle(extra);
}

void FirefoxInfoExtractor::writeDetailsForActivity(Activity& activity) {
  ActivityDetails& details = activity.details;
  if (details.windowTitle &&
      isFirefoxPrivateTitle(*details.windowTitle, extraPrivateBrowsingSuffix_)) {
    details.isPrivateBrowsing = true;
  }
  enableEnhancedAccessibility(process_, activity);
  WebAreaURLInfoExtractor::readWebAddress(process_, activity);
}

}  // namespace kestro
