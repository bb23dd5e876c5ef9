#include "calls/MeetingTitles.h"

#include <algorithm>

#include "calls/FaceTimeBanner.h"
#include "calls/TeamsCallWindow.h"
#include "extractors/AccessibilityElement.h"
#include "extractors/TitleParts.h"
#include "foundation/TextCase.h"
#include "platform/Process.h"
#include "product/KestroLegacy.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

// Of "com.example.chat.helper" and "com.example.chat.helper.renderer": "com.example.chat". Absent
// of identifiers that are no helper's.
std::optional<std::string> mainApplicationOf(const std::string& bundleIdentifier) {
  const std::size_t helper = bundleIdentifier.find(".helper");
  return helper == std::string::npos ? std::nullopt
                                     : std::optional(bundleIdentifier.substr(0, helper));
}

}  // namespace

MeetingTitles::MeetingTitles(Process& process)
    : process_(process),
      huddle_(R"(^.* \| (.+) \| (\d?\d?:?\d\d:\d\d)$)"),
      parenthesisedAddition_(R"(^(.+) \((.+)\)$)"),
      callTimer_(R"(^\d?\d?:?\d?\d:\d\d(\s.+)?$)") {}

std::optional<std::string> MeetingTitles::titleForApplication(const std::string& bundleIdentifier,
                                                              Activity& activity) const {
  if (contains(bundleIdentifier, "com.tinyspeck.slackmacgap")) {
    auto title = slackTitle(windowTitles(bundleIdentifier));
    // A helper holds the sound; the windows are the main application's.
    const auto main = mainApplicationOf(bundleIdentifier);
    return title || !main ? title : slackTitle(windowTitles(*main));
  }
  if (contains(bundleIdentifier, "com.microsoft.teams")) return teamsTitle(activity);
  return std::nullopt;
}

std::vector<std::string> MeetingTitles::windowTitles(const std::string& bundleIdentifier) const {
  return kestro::windowTitles(process_,
                              process_.platform().workspace.runningApplications(bundleIdentifier));
}

std::optional<std::string> MeetingTitles::slackTitle(
    const std::vector<std::string>& windowTitles) const {
  return firstNonNil(windowTitles, [&](const std::string& title) -> std::optional<std::string> {
    const auto match = firstMatch(title, huddle_);
    return match ? match->captures[1] : std::nullopt;
  });
}

std::optional<std::string> MeetingTitles::teamsTitle(Activity& activity) const {
  const auto& identifier = activity.applicationBundleIdentifier();
  if (identifier != "com.microsoft.teams" && identifier != "com.microsoft.teams2") {
    return std::nullopt;
  }
  if (!hasTeamsCallWindow(process_, activity) || !activity.details.windowTitle) {
    return std::nullopt;
  }
  return teamsTitle(*activity.details.windowTitle);
}

std::optional<std::string> MeetingTitles::teamsTitle(const std::string& windowTitle) const {
  const std::string title = withoutEvery(windowTitle, " | Microsoft Teams");
  if (title.empty()) return std::nullopt;
  auto parts = titleParts(title, " | ");
  std::erase_if(
      parts, [](const std::string& part) { return part == "Microsoft Teams" || part == "Chat"; });
  if (parts.empty()) return std::nullopt;
  const auto match = firstMatch(parts.front(), parenthesisedAddition_);
  return match ? match->captures[1] : parts.front();
}

std::optional<std::string> MeetingTitles::faceTimeTitle() const {
  auto title = faceTimeWindowTitle(windowTitles("com.apple.FaceTime"));
  return title ? title : notificationCenterTitle();
}

std::optional<std::string> MeetingTitles::notificationCenterTitle() const {
  return firstNonNil(faceTimeBanners(process_),
                     [&](const std::vector<std::string>& texts) { return bannerTitle(texts); });
}

std::optional<std::string> MeetingTitles::bannerTitle(const std::vector<std::string>& texts) const {
  const bool hasTimer = std::ranges::any_of(
      texts, [&](const std::string& text) { return matches(text, callTimer_); });
  return hasTimer ? std::optional(texts.front()) : std::nullopt;
}

std::optional<std::string> faceTimeWindowTitle(const std::vector<std::string>& windowTitles) {
  constexpr std::size_t wordsOfOtherWindows = 2;
  return firstNonNil(windowTitles, [](const std::string& title) -> std::optional<std::string> {
    auto words = titleParts(title, " ");
    std::erase(words, "");
    return words.size() > wordsOfOtherWindows ? std::optional(title) : std::nullopt;
  });
}

}  // namespace kestro
