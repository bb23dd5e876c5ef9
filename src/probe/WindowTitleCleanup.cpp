#include "probe/WindowTitleCleanup.h"

namespace kestro {
namespace {

constexpr std::string_view leftToRightMark = "\u200E";
constexpr std::string_view rightToLeftMark = "\u200F";

void removeMatches(const RegularExpression& expression, std::optional<std::string>& title) {
  if (title) title = expression.replacing(*title, "");
}

void removeAll(std::string_view mark, std::string& text) {
  for (auto found = text.find(mark); found != std::string::npos; found = text.find(mark, found)) {
    text.erase(found, mark.size());
  }
}

bool countsMessages(const std::optional<std::string>& bundleIdentifier) {
  return bundleIdentifier == "com.apple.mail" || bundleIdentifier == "com.freron.MailMate";
}

}  // namespace

WindowTitleCleanup::WindowTitleCleanup(Process&)
    : markers_{RegularExpression(R"(\*$)"), RegularExpression(R"(\s?[-–—]\s?Edited$)"),
               RegularExpression(R"(^Edited\s?[-–—]\s?)")},
      messageCount_(R"(\s?\(\d[^()]+\)$)") {}

void WindowTitleCleanup::apply(Activity& activity) const {
  ActivityDetails& details = activity.details;
  for (const RegularExpression& marker : markers_) {
    removeMatches(marker, details.windowTitle);
    removeMatches(marker, details.documentTitle);
  }
  if (details.windowTitle) {
    removeAll(leftToRightMark, *details.windowTitle);
    removeAll(rightToLeftMark, *details.windowTitle);
  }
  if (countsMessages(activity.applicationBundleIdentifier())) {
    removeMatches(messageCount_, details.documentTitle);
  }
}

}  // namespace kestro
