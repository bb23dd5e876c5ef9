// Web-view applications whose window title is useless: the title of the page instead.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class WebAreaTitleInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "WebAreaTitleInfoExtractor";
  explicit WebAreaTitleInfoExtractor(Process& process) : process_(process) {}

  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

// The title of a page without " • " and the application's name at its end.
std::string pageTitleWithoutApplicationName(std::string_view title,
                                            const std::optional<std::string>& applicationName);

}  // namespace kestro
