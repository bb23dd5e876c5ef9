// The live desktop's notifications are not spoken to yet: none may be shown. Main thread only.
#pragma once

#include "platform/RunLoop.h"
#include "platform/UserNotifications.h"

namespace kestro {

class LinuxUserNotifications final : public UserNotifications {
 public:
  explicit LinuxUserNotifications(RunLoop& runLoop) : runLoop_(runLoop) {}

  void setCategory(const std::string&, std::vector<UserNotificationAction>) override {}
  void requestPermission(std::function<void(bool isAllowed)> answer) override {
    runLoop_.post([answer = std::move(answer)] { answer(false); });
  }
  void deliver(const UserNotification&) override {}
  void setResponseHandler(ResponseHandler) override {}

 private:
  RunLoop& runLoop_;
};

}  // namespace kestro
