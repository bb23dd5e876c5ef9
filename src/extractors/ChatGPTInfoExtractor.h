// ChatGPT: the open chat, from the sidebar's list of chats and the toolbar of the conversation.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class ChatGPTInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "ChatGPTInfoExtractor";
  explicit ChatGPTInfoExtractor(Process& process) : process_(process) {}

  // Where the platform searches for itself: some ten requests for a window, one for each chat of
  // the list up to the selected one, and one for each group of the toolbar or, where no chat is
  // selected, two for each of its buttons.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

// What the toolbar's texts say beyond the chat, in one text, then the chat; each only when it says
// something.
std::vector<std::string> chatGPTContextPath(std::vector<std::string> toolbarTexts,
                                            const std::optional<std::string>& chat);

}  // namespace kestro
