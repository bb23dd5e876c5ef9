// Discord: server and channel, from the window title.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class DiscordInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "DiscordInfoExtractor";
  explicit DiscordInfoExtractor(Process&) {}

  // No requests.
  void writeDetailsForActivity(Activity& activity) override;
};

// Server, then channel; empty when the title names neither.
std::vector<std::string> discordContextPath(std::string_view windowTitle);

}  // namespace kestro
