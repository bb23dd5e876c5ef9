// ChatGPT Atlas: page title and address. Another process hosts the browser's web content; its tree
// is shown only when accessibility is switched on there.
#pragma once

#include <string>

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class ChatGPTAtlasInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "ChatGPTAtlasInfoExtractor";
  explicit ChatGPTAtlasInfoExtractor(Process& process);

  // One request for the hosting process while its tree is shown, and one or two for each element on
  // the way to the page: some 20.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  void enableWebContent() const;

  Process& process_;
  std::string companionBundleIdentifier_;
};

}  // namespace kestro
