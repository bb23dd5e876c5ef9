// GitHub Desktop: the current repository and branch, from the toolbar of its page.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class GitHubDesktopInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "GitHubDesktopInfoExtractor";
  explicit GitHubDesktopInfoExtractor(Process& process) : process_(process) {}

  // A window costs what its web areas cost, one request a level down to the toolbar and for each
  // child on the way, and two and one a text for each button of the toolbar.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

// What a toolbar button names, from its texts: the one behind its label, or its only one. Absent
// for a button without a text and for one that exchanges commits.
std::optional<std::string> gitHubDesktopName(const std::vector<std::string>& buttonTexts);

}  // namespace kestro
