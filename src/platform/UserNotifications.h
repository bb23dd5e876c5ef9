// Notifications that the desktop shows to the user. Main thread only; answers come later, on the
// same thread.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "foundation/PropertyList.h"

namespace kestro {

struct UserNotificationAction {
  std::string identifier;
  std::string title;
};

struct UserNotification {
  std::string title;
  std::string body;
  bool playsDefaultSound = false;
  std::string categoryIdentifier;
  PropertyListDictionary userInfo;  // comes back with the response, also in a later process life
};

struct UserNotificationResponse {
  enum class Kind { clicked, dismissed, action };
  Kind kind;
  std::string actionIdentifier;  // of an action only
};

class UserNotifications {
 public:
  using ResponseHandler =
      std::function<void(const std::string& categoryIdentifier, const UserNotificationResponse&,
                         const PropertyListDictionary& userInfo)>;

  virtual ~UserNotifications() = default;

  // The actions of the notifications of a category, in the order in which they are offered.
  virtual void setCategory(const std::string& identifier,
                           std::vector<UserNotificationAction> actions) = 0;
  // Tells whether notifications may be shown; asks the user when that is not known. Never answers
  // after the process life has ended that asked.
  virtual void requestPermission(std::function<void(bool isAllowed)> answer) = 0;
  virtual void deliver(const UserNotification& notification) = 0;
  // Gets the responses from now on; null: nobody does.
  virtual void setResponseHandler(ResponseHandler handler) = 0;
};

}  // namespace kestro
