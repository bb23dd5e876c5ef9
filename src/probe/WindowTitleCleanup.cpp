#include "probe/WindowTitleCleanup.h"

namespace kestro {
namespace {

void removeMatches(const RegularExpression& expression, std::optional<std::string>& title) {
  if (title) title = expression.replacing(*title, "");
}

bool countsMessages(const std::optional<std::string>& bundleIdentifier) {
  return bundleIdentifier == "com.apple.mail" || bundleIdentifier == "com.freron.MailMate";
}

}  // namespace

WindowTitleCleanup::WindowTitleCleanup(Process&)
    : markers_{RegularExpression(R"(\*$)"), RegularExpression(R"(\s?[-–—]\s?Edited$)"),
               RegularExpression(R"(^Edited\s?[-–—]\s?)")},
      // Not by their bytes: taking some out of a broken title could put others together.
      directionMark_("[\u200E\u200F]"),
      messageCount_(R"(\s?\(\d[^()]+\)$)") {}

void WindowTitleCleanup::apply(Activity& activity) const {
  ActivityDetails& details = activity.details;
  for (const RegularExpression& marker : markers_) {
    removeMatches(marker, details.windowTitle);
    removeMatches(marker, details.documentTitle);
  }
  removeMatches(directionMark_, details.windowTitle);
  if (countsMessages(activity.applicationBundleIdentifier())) {
    removeMatches(messageCount_, details.documentTitle);
  }
}

}  // namespace kestro
