#include "scene/SceneUserNotifications.h"

namespace kestro {
namespace {

UserNotificationResponse responseOf(const std::string& action) {
  if (action == "default") return {UserNotificationResponse::Kind::clicked, {}};
  if (action == "dismiss") return {UserNotificationResponse::Kind::dismissed, {}};
  return {UserNotificationResponse::Kind::action, action};
}

PropertyListArray titles(const std::vector<UserNotificationAction>& actions) {
  PropertyListArray list;
  for (const UserNotificationAction& action : actions) {
    list.emplace_back(
        PropertyListDictionary{{"identifier", action.identifier}, {"title", action.title}});
  }
  return list;
}

}  // namespace

void SceneUserNotifications::setCategory(const std::string& identifier,
                                         std::vector<UserNotificationAction> actions) {
  actionsByCategory_.insert_or_assign(identifier, std::move(actions));
}

void SceneUserNotifications::requestPermission(std::function<void(bool isAllowed)> answer) {
  const PropertyList* given = state_.product.find("notificationsAllowed");
  const bool* isAllowed = given ? given->get<bool>() : nullptr;
  runLoop_.post(
      [answer = std::move(answer), result = !isAllowed || *isAllowed] { answer(result); });
}

void SceneUserNotifications::deliver(const UserNotification& notification) {
  if (transcript_.isActive()) {
    transcript_.record("notification",
                       {{"title", notification.title},
                        {"body", notification.body},
                        {"sound", notification.playsDefaultSound},
                        {"category", notification.categoryIdentifier},
                        {"actions", titles(actionsByCategory_[notification.categoryIdentifier])},
                        {"userInfo", notification.userInfo}});
  }
  newest_ = Shown{notification.categoryIdentifier, notification.userInfo};
}

void SceneUserNotifications::respond(const NotificationResponseStep& step) {
  if (!handler_) return;
  Shown shown = newest_.value_or(Shown{});
  if (step.category) shown.categoryIdentifier = *step.category;
  if (step.userInfo) shown.userInfo = *step.userInfo;
  handler_(shown.categoryIdentifier, responseOf(step.action), shown.userInfo);
}

// The categories are the desktop's to remember; the process that got the responses is gone.
void SceneUserNotifications::beginNextLife() {
  handler_ = nullptr;
}

}  // namespace kestro
