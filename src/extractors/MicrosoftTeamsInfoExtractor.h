// Microsoft Teams: the chat or channel, from the window title.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"
#include "foundation/RegularExpression.h"

namespace kestro {

class MicrosoftTeamsInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "MicrosoftTeamsInfoExtractor";
  explicit MicrosoftTeamsInfoExtractor(Process& process);

  // No requests but those of switching accessibility on, and these for the second generation only.
  void writeDetailsForActivity(Activity& activity) override;

  // The parts of the title without the application's own; empty when nothing remains.
  std::vector<std::string> contextPath(std::string_view windowTitle) const;

 private:
  Process& process_;
  RegularExpression nameWithAddition_;
};

}  // namespace kestro
