#include "calls/BrowserCalls.h"

#include <algorithm>

#include "calls/CallSettings.h"
#include "calls/DisabledApplications.h"
#include "extractors/TitleParts.h"
#include "foundation/TextCase.h"
#include "platform/Process.h"
#include "product/KestroDatabase.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

bool isBrowser(Process& process, const std::string& bundleIdentifier) {
  // Plays the sound of every page of the platform's own engine.
  if (contains(bundleIdentifier, "com.apple.WebKit.GPU")) return true;
  return std::ranges::any_of(
      ApplicationList::webBrowsing(process),
      [&](const std::string& browser) { return contains(bundleIdentifier, browser); });
}

std::string firstPart(const std::string& text, std::string_view separator) {
  return text.substr(0, text.find(separator));
}

std::optional<std::string> googleMeetTitle(const std::optional<std::string>& pageTitle) {
  if (!pageTitle) return std::nullopt;
  const auto title = removingTitlePrefixesAndSuffixes(*pageTitle, "Meet", true);
  return title ? std::optional(firstPart(*title, " - ")) : std::nullopt;
}

// The room is the first word.
std::optional<std::string> wherebyTitle(const std::optional<std::string>& pageTitle) {
  if (!pageTitle) return std::nullopt;
  std::string room = firstPart(*pageTitle, " ");
  if (room.starts_with('/')) room.erase(0, 1);
  return room.empty() ? std::nullopt : std::optional(room);
}

}  // namespace

BrowserCallHosts::BrowserCallHosts(Process& process) {
  const auto& preferences = process.shared<HelperPreferences>();
  googleMeet = preferences.getNonEmptyString("RunningCallDetector_googleMeetHost")
                   .value_or("meet.google.com");
  whereby =
      preferences.getNonEmptyString("RunningCallDetector_wherebyDomain").value_or("whereby.com");
}

std::optional<std::string> browserPageTitle(const std::optional<std::string>& windowTitle,
                                            const std::optional<std::string>& browserName,
                                            std::string_view bundleIdentifier) {
  if (!windowTitle) return std::nullopt;
  constexpr std::string_view dash = " – ";
  constexpr std::string_view playsSound = " 🔊";
  std::string title = *windowTitle;
  title = withoutEvery(std::move(title), playsSound);
  if (browserName) {
    const auto stripped = removingTitlePrefixesAndSuffixes(title, *browserName, true);
    if (!stripped) return std::nullopt;
    title = *stripped;
  }
  const std::string identifier = lowercased(bundleIdentifier);
  if (contains(identifier, "chrome")) return firstPart(title, dash);
  const bool isSafari = contains(identifier, "safari") || contains(identifier, "com.apple.webkit");
  // The profile comes first there.
  if (isSafari && contains(title, dash)) return title.substr(title.find(dash) + dash.size());
  return title;
}

std::optional<ApplicationAndMetadata> browserCall(
    Process& process, const PowerManagementAssertions::PIDAndRunningApplication& application,
    const Activity& activity) {
  const std::string identifier = application.bundleIdentifier.value_or("");
  if (identifier.empty() || process.shared<CallSettings>().isDisabled(identifier)) return {};
  if (isNeverInACall(identifier) || !isBrowser(process, identifier)) return {};

  CallMetadata metadata;
  metadata.appName = application.applicationName;
  metadata.audioInAndOutAssertionsHaveBeenRecordedSeparately =
      application.audioInAndOutAssertionsHaveBeenRecordedSeparately;
  const auto title =
      browserPageTitle(activity.details.windowTitle, application.applicationName, identifier);
  const std::string address = activity.details.documentPath.value_or("");
  const auto& hosts = process.shared<BrowserCallHosts>();
  if (contains(address, hosts.googleMeet)) {
    metadata.serviceName = "Google Meet";
    metadata.meetingTitle = googleMeetTitle(title);
  } else if (contains(address, hosts.whereby) || (title && contains(*title, " Whereby"))) {
    metadata.serviceName = "Whereby";
    metadata.meetingTitle = wherebyTitle(title);
  }
  return ApplicationAndMetadata{identifier, std::move(metadata)};
}

}  // namespace kestro
