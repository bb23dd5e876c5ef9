// Codex: the current thread and its project, from the sidebar of the page.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

class CodexInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "CodexInfoExtractor";
  explicit CodexInfoExtractor(Process& process) : process_(process) {}

  // Where the platform searches for itself: two requests for a window and its sidebar, a few for
  // the thread, and three to six for each level from there up to its project.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  Process& process_;
};

// Project, then thread, of what is known and says something.
std::vector<std::string> codexContextPath(const std::optional<std::string>& project,
                                          const std::string& thread);

}  // namespace kestro
