// The new Outlook: sender and subject of the selected message.
#pragma once

#include "extractors/AccessibilityElement.h"
#include "extractors/KSApplicationInfoExtractor.h"
#include "foundation/RegularExpression.h"

namespace kestro {

class NewOutlookInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "NewOutlookInfoExtractor";
  explicit NewOutlookInfoExtractor(Process& process);

  // Some 10 requests for a window with a selected message, three for each further scroll area; the
  // open message's header costs three to six.
  void writeDetailsForActivity(Activity& activity) override;

  struct Summary {
    std::optional<std::string> subject;
    std::optional<std::string> sender;
  };
  // What the description of a row in the message list says, in the user's language; both absent
  // when it is in another.
  Summary summary(std::string_view rowDescription) const;

 private:
  Summary selectedMessage(const AccessibilityElement& window) const;
  std::vector<std::string> contextPath(const AccessibilityElement& window) const;

  Process& process_;
  // Absent when a translation is no valid expression.
  std::optional<RegularExpression> rowExpression_;
};

}  // namespace kestro
