// Slack: workspace and conversation, from the window title.
#pragma once

#include "extractors/KSApplicationInfoExtractor.h"
#include "foundation/RegularExpression.h"

namespace kestro {

class SlackInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "SlackInfoExtractor";
  explicit SlackInfoExtractor(Process& process);

  // No requests when the window has a title.
  void writeDetailsForActivity(Activity& activity) override;

  // The parts of the title that name something, in reverse order; empty when none does.
  std::vector<std::string> contextPath(std::string_view windowTitle) const;

 private:
  void readTitleFromPage(Activity& activity) const;
  bool isDecoration(const std::string& part) const;

  Process& process_;
  RegularExpression applicationName_;
  RegularExpression callTimer_;
  RegularExpression unreadCounter_;
  RegularExpression marker_;
  RegularExpression trailingCounter_;
};

}  // namespace kestro
