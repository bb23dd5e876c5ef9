// Safari: private windows, the address of the front tab, and the title of the history view.
#pragma once

#include <set>

#include "extractors/AccessibilityElement.h"
#include "extractors/KSApplicationInfoExtractor.h"

namespace kestro {

// The title with its first part at the end, when the history's menu item names that part: the
// history view puts its own name before that of the page it stands over.
std::string titleWithHistoryLast(const std::string& title, std::string_view showHistory);

// Whether an address field's text is a whole address: one that has a scheme.
bool isAddress(const std::optional<std::string>& text);

class SafariInfoExtractor final : public KSApplicationInfoExtractor {
 public:
  static constexpr std::string_view name = "SafariInfoExtractor";
  // Reads Safari's own texts in the user's languages.
  explicit SafariInfoExtractor(Process& process);

  // Costs, for a window with some ten toolbar items, about 40 requests.
  void writeDetailsForActivity(Activity& activity) override;

 private:
  void moveHistoryToEnd(Activity& activity) const;
  void readAddressField(Activity& activity, const AccessibilityElement& field) const;
  bool containsFieldPhrase(const std::optional<std::string>& text) const;

  Process& process_;
  std::set<std::string> titlePhrases_;  // in lower case
};

}  // namespace kestro
