// What is offered when a call has ended: a time entry at once, the editor, a notification that
// asks, or nothing; and what the user's answers to that notification do. Owned by the call
// detector; main thread only.
#pragma once

#include <optional>
#include <string>

#include "calls/CallMetadata.h"
#include "foundation/PropertyList.h"
#include "product/KestroDatabase.h"

namespace kestro {

class Process;

class CallEndedHandler {
 public:
  explicit CallEndedHandler(Process& process) : process_(process) {}

  // The actions of its notifications. Their responses go to the receiver.
  void registerNotificationCategory(UserNotificationResponseReceiver& receiver) const;

  // Offers a call that was long enough. Returns the name of what was done; absent while that hangs
  // on the permission to notify.
  std::optional<std::string> handleEndedCall(const std::string& bundleIdentifier,
                                             const CallProperties& call);
  // Does nothing for other categories.
  void handleNotificationResponse(const std::string& categoryIdentifier,
                                  const UserNotificationResponse& response,
                                  const PropertyListDictionary& userInfo);

 private:
  std::string categoryIdentifier() const;
  std::string saveAtOnce(const CallProperties& call);
  void askForPermission(const std::string& bundleIdentifier, const CallProperties& call);
  void postNotification(const std::string& bundleIdentifier, const CallProperties& call);
  void openEditor(const std::string& bundleIdentifier, const CallProperties& call);
  void handleAction(const std::string& identifier, const PropertyListDictionary& userInfo);
  void createTimeEntry(const PropertyListDictionary& userInfo);
  void stopAskingForApplication(const PropertyListDictionary& userInfo);

  Process& process_;
};

}  // namespace kestro
