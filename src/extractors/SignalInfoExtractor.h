// Signal: the open conversation, by the header button above its messages.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class SignalInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "SignalInfoExtractor";
  explicit SignalInfoExtractor(Process& process) : process_(process) {}

  // Some 20 requests for a window with an open conversation, however long the conversation is.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

// A text on the header button without invisible characters; may be empty. Absent for one that
// cannot be the name: no text at all, a counter ("3", "99+") or a time ("12:30").
std::optional<std::string> signalHeaderText(std::string_view text);

}  // namespace kestro
