// Chromium-based browsers: private windows by their title, and the name of the profile, which the
// toolbar's avatar button carries. The address is the window's document, which the probe has read.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class ChromeProfileInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "ChromeProfileInfoExtractor";
  explicit ChromeProfileInfoExtractor(Process& process) : process_(process) {}

  // One request a level for the children, and one for each child up to the wanted one: a dozen in a
  // window without surprises.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

bool isChromePrivateTitle(std::string_view title);
// The title with the profile behind a dash, unless it ends with that name already.
std::string titleWithProfile(const std::optional<std::string>& title, const std::string& profile);

}  // namespace kestro
