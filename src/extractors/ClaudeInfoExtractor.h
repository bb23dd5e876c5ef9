// Claude: the open chat and its project, from the head of the page.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class ClaudeInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "ClaudeInfoExtractor";
  // Where the service's pages are, unless the preference ClaudeInfoExtractor_serviceAddress, read
  // once, says otherwise.
  static constexpr std::string_view serviceAddress = "https://claude.ai";
  explicit ClaudeInfoExtractor(Process& process);

  // Some ten requests where the platform searches for itself, one more for each web area before the
  // service's and for each element beside the chat's button.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
  std::string serviceAddress_;
};

// Whether the address begins with the service's, and that ends where a part of the address does:
// another host may begin alike.
bool isClaudePage(std::string_view address, std::string_view serviceAddress);

// The chat's title; absent for the one that every new chat has.
std::optional<std::string> claudeChatTitle(std::string_view buttonTitle);

}  // namespace kestro
