// Logic Pro: which dialog is in front, such as the bounce of a project.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class LogicProInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "LogicProInfoExtractor";
  explicit LogicProInfoExtractor(Process& process) : process_(process) {}

  // One request for a window that is no dialog; for a dialog a request for each child and each
  // text.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

// The title before its last ": ", or the whole title without one.
std::string titleBeforeLastColon(const std::string& title);

}  // namespace kestro
