#include "product/UserNotificationCenter.h"

#include "platform/Process.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {

UserNotificationCenter& UserNotificationCenter::sharedInstance(Process& process) {
  return process.shared<UserNotificationCenter>();
}

UserNotificationCenter::UserNotificationCenter(Process& process) : process_(process) {
  process_.platform().userNotifications.setResponseHandler(
      [this](const std::string& categoryIdentifier, const UserNotificationResponse& response,
             const PropertyListDictionary& userInfo) {
        const auto found = receivers_.find(categoryIdentifier);
        if (found == receivers_.end()) return;
        found->second->handleNotificationResponse(categoryIdentifier, response, userInfo);
      });
}

UserNotificationCenter::~UserNotificationCenter() {
  process_.platform().userNotifications.setResponseHandler(nullptr);
}

void UserNotificationCenter::registerMetadata(UserNotificationCategoryMetadata metadata,
                                              const std::string& categoryIdentifier) {
  recordOperation(process_, "UserNotificationCenter register", {categoryIdentifier});
  receivers_.insert_or_assign(categoryIdentifier, metadata.receiver);
  process_.platform().userNotifications.setCategory(categoryIdentifier,
                                                    std::move(metadata.actions));
}

void UserNotificationCenter::withNotificationPermission(
    std::function<void(bool isAllowed)> answer) {
  recordOperation(process_, "UserNotificationCenter withNotificationPermission");
  process_.platform().userNotifications.requestPermission(std::move(answer));
}

void UserNotificationCenter::deliver(const UserNotification& notification) {
  process_.platform().userNotifications.deliver(notification);
}

}  // namespace kestro
