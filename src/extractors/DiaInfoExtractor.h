// Dia, whose window title is the page title, shortened, behind the name of a space or profile.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class DiaInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "DiaInfoExtractor";
  explicit DiaInfoExtractor(Process& process) : process_(process) {}

  // Costs what the web-address step costs.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

// The page title, with the window title's prefix behind it where the rest of the window title is
// the beginning of the page title.
std::string diaTitle(std::string_view windowTitle, std::string_view pageTitle);

}  // namespace kestro
