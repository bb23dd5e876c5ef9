// Notifications of a scripted desktop: recorded, and answered by steps. What was delivered outlives
// the process life. Main thread only.
#pragma once

#include <map>

#include "platform/RunLoop.h"
#include "platform/Transcript.h"
#include "platform/UserNotifications.h"
#include "scene/SceneState.h"
#include "scene/SceneStep.h"

namespace kestro {

class SceneUserNotifications final : public UserNotifications {
 public:
  SceneUserNotifications(const SceneState& state, RunLoop& runLoop, Transcript& transcript)
      : state_(state), runLoop_(runLoop), transcript_(transcript) {}

  void setCategory(const std::string& identifier,
                   std::vector<UserNotificationAction> actions) override;
  void requestPermission(std::function<void(bool isAllowed)> answer) override;
  void deliver(const UserNotification& notification) override;
  void setResponseHandler(ResponseHandler handler) override { handler_ = std::move(handler); }

  void respond(const NotificationResponseStep& step);
  void beginNextLife();

 private:
  struct Shown {
    std::string categoryIdentifier;
    PropertyListDictionary userInfo;
  };

  const SceneState& state_;
  RunLoop& runLoop_;
  Transcript& transcript_;
  std::map<std::string, std::vector<UserNotificationAction>> actionsByCategory_;
  std::optional<Shown> newest_;
  ResponseHandler handler_;
};

}  // namespace kestro
