// The product's notification service: part of its database library. Main thread only.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/UserNotifications.h"

namespace kestro {

class Process;

class UserNotificationResponseReceiver {
 public:
  virtual ~UserNotificationResponseReceiver() = default;
  virtual void handleNotificationResponse(const std::string& categoryIdentifier,
                                          const UserNotificationResponse& response,
                                          const PropertyListDictionary& userInfo) = 0;
};

struct UserNotificationCategoryMetadata {
  std::vector<UserNotificationAction> actions;
  UserNotificationResponseReceiver* receiver;  // not owned; lives as long as the process life
};

class UserNotificationCenter {
 public:
  static UserNotificationCenter& sharedInstance(Process& process);

  // Use sharedInstance.
  explicit UserNotificationCenter(Process& process);
  ~UserNotificationCenter();
  UserNotificationCenter(const UserNotificationCenter&) = delete;
  UserNotificationCenter& operator=(const UserNotificationCenter&) = delete;

  // From now on the responses to notifications of the category reach the receiver.
  void registerMetadata(UserNotificationCategoryMetadata metadata,
                        const std::string& categoryIdentifier);
  // Calls back, later, with whether notifications may be shown.
  void withNotificationPermission(std::function<void(bool isAllowed)> answer);
  void deliver(const UserNotification& notification);

 private:
  Process& process_;
  std::map<std::string, UserNotificationResponseReceiver*> receivers_;
};

}  // namespace kestro
