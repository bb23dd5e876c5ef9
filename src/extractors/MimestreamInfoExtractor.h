// Mimestream: the message being written, or the selected message.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class MimestreamInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "MimestreamInfoExtractor";
  explicit MimestreamInfoExtractor(Process& process) : process_(process) {}

  // Looks at the first window only and reads the selected row only: some 15 requests.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

// Whether the title of a compose window says what the message is about.
bool namesMimestreamMessage(std::string_view windowTitle);

}  // namespace kestro
