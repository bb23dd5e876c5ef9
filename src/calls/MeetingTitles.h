// Titles of meetings, read from the windows of the applications that hold them. Absent when there
// is none to be read. The costs in requests are stated where they are not plain; they are only paid
// while such an application uses audio in both directions.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/RegularExpression.h"
#include "product/Activity.h"

namespace kestro {

class Process;

class MeetingTitles {
 public:
  explicit MeetingTitles(Process& process);

  // Slack: by the titles of its windows. Teams: by the sampled activity.
  std::optional<std::string> titleForApplication(const std::string& bundleIdentifier,
                                                 Activity& activity) const;
  // By FaceTime's windows or, when these say nothing, by its banner in Notification Center.
  std::optional<std::string> faceTimeTitle() const;

  // The huddle's name before the running timer.
  std::optional<std::string> slackTitle(const std::vector<std::string>& windowTitles) const;
  // The other's name, or the meeting's.
  std::optional<std::string> teamsTitle(const std::string& windowTitle) const;
  // The first banner text, when one of the texts is a call timer.
  std::optional<std::string> bannerTitle(const std::vector<std::string>& texts) const;

 private:
  std::vector<std::string> windowTitles(const std::string& bundleIdentifier) const;
  std::optional<std::string> teamsTitle(Activity& activity) const;
  std::optional<std::string> notificationCenterTitle() const;

  Process& process_;
  RegularExpression huddle_;
  RegularExpression parenthesisedAddition_;
  RegularExpression callTimer_;
};

// The first title of more than two words; FaceTime's other windows have shorter ones.
std::optional<std::string> faceTimeWindowTitle(const std::vector<std::string>& windowTitles);

}  // namespace kestro
