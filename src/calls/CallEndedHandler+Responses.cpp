// The notification's category, and what the answers to it do.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>

#include "calls/CallEndedHandler.h"
#include "calls/CallEvents.h"
#include "calls/CallNotificationContents.h"
#include "calls/CallSettings.h"
#include "calls/FalsePositiveReport.h"
#include "platform/LocalizedStrings.h"
#include "platform/Process.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr std::string_view createTaskForCall = "createTaskForCall";
constexpr std::string_view reportFalsePositiveAction = "reportFalsePositive";
constexpr std::string_view doNotAskAgain = "doNotAskAgain";
constexpr std::string_view doNotAskAgainForThisApp = "doNotAskAgainForThisApp";

struct Action {
  std::string_view identifier;
  std::string_view title;
};
constexpr std::array<Action, 4> actions{
    {{createTaskForCall, localizable("Create Time Entry")},
     {reportFalsePositiveAction, localizable("Report False Positive")},
     {doNotAskAgain, localizable("Don’t Ask Again")},
     {doNotAskAgainForThisApp, localizable("Don't Ask Again for This App")}}};

std::string descriptionOf(const UserNotificationResponse& response) {
  switch (response.kind) {
    case UserNotificationResponse::Kind::clicked:
      return "default";
    case UserNotificationResponse::Kind::dismissed:
      return "dismiss";
    case UserNotificationResponse::Kind::action:
      break;
  }
  return fmt::format("action({})", response.actionIdentifier);
}

std::string keysOf(const PropertyListDictionary& userInfo) {
  std::vector<std::string> keys;
  for (const PropertyListMember& member : userInfo)
    keys.push_back(member.key);
  return fmt::format("{}", fmt::join(keys, ", "));
}

}  // namespace

std::string CallEndedHandler::categoryIdentifier() const {
  return std::string(KESTRO_MAIN_BUNDLE_IDENTIFIER) + ".callEnded";
}

void CallEndedHandler::registerNotificationCategory(
    UserNotificationResponseReceiver& receiver) const {
  std::vector<UserNotificationAction> list;
  list.reserve(actions.size());
  for (const Action& action : actions) {
    list.push_back({std::string(action.identifier), localizedString(process_, action.title)});
  }
  UserNotificationCenter::sharedInstance(process_).registerMetadata({std::move(list), &receiver},
                                                                    categoryIdentifier());
}

void CallEndedHandler::handleNotificationResponse(const std::string& category,
                                                  const UserNotificationResponse& response,
                                                  const PropertyListDictionary& userInfo) {
  if (category != categoryIdentifier()) return;
  logNotificationResponse(process_, descriptionOf(response));
  switch (response.kind) {
    case UserNotificationResponse::Kind::dismissed:
      return;
    case UserNotificationResponse::Kind::clicked:
      createTimeEntry(userInfo);
      return;
    case UserNotificationResponse::Kind::action:
      handleAction(response.actionIdentifier, userInfo);
      return;
  }
}

void CallEndedHandler::handleAction(const std::string& identifier,
                                    const PropertyListDictionary& userInfo) {
  if (identifier == createTaskForCall) {
    createTimeEntry(userInfo);
  } else if (identifier == reportFalsePositiveAction) {
    reportFalsePositive(process_, bundleIdentifierOf(userInfo), callPropertiesOf(userInfo));
  } else if (identifier == doNotAskAgainForThisApp) {
    stopAskingForApplication(userInfo);
  } else if (identifier == doNotAskAgain) {
    setCallNotificationMode(process_, CallNotificationMode::none);
  }
}

void CallEndedHandler::createTimeEntry(const PropertyListDictionary& userInfo) {
  const auto call = callPropertiesOf(userInfo);
  const auto bundleIdentifier = bundleIdentifierOf(userInfo);
  if (call && bundleIdentifier) openEditor(*bundleIdentifier, *call);
}

void CallEndedHandler::stopAskingForApplication(const PropertyListDictionary& userInfo) {
  const auto bundleIdentifier = bundleIdentifierOf(userInfo);
  if (!bundleIdentifier) {
    const std::string keys = keysOf(userInfo);
    Log::warning(process_,
                 "[RunningCallDetector] missing bundleIdentifier in doNotAskAgainForThisApp, "
                 "userInfo keys: " +
                     keys);
    logDoNotAskAgainForUnknownApp(process_, keys);
    return;
  }
  auto& observer = process_.shared<CallSettings>().appsWithCallTrackingDisabled;
  auto applications = observer.value();
  if (std::ranges::find(applications, *bundleIdentifier) == applications.end()) {
    applications.push_back(*bundleIdentifier);
  }
  observer.set(applications);
  logDoNotAskAgainForThisApp(process_, *bundleIdentifier, callPropertiesOf(userInfo));
}

}  // namespace kestro
