// Notifications by the desktop's notification server (org.freedesktop.Notifications, version
// 1.2). Each gets exactly one answer: an action or a click wins over
// the closing that some servers announce beside it. One that its server has lost is shown again by
// the next, and one of an earlier process takes its own place anew: some servers (dunst) give an
// answer only to the connection that asked. Main thread only.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "linux/session/BusConnection.h"
#include "linux/shell/PendingNotifications.h"
#include "platform/UserNotifications.h"

namespace kestro {

class LinuxUserNotifications final : public UserNotifications {
 public:
  LinuxUserNotifications(BusConnection& sessionBus, LinuxRunLoop& runLoop, SystemLog& log,
                         std::filesystem::path pendingFile);
  ~LinuxUserNotifications() override;
  LinuxUserNotifications(const LinuxUserNotifications&) = delete;
  LinuxUserNotifications& operator=(const LinuxUserNotifications&) = delete;

  void setCategory(const std::string& identifier,
                   std::vector<UserNotificationAction> actions) override;
  // Allowed where a server is there, or can be started, that shows actions.
  void requestPermission(std::function<void(bool isAllowed)> answer) override;
  void deliver(const UserNotification& notification) override;
  void setResponseHandler(ResponseHandler handler) override;

 private:
  struct Answer {
    PendingNotification notification;
    UserNotificationResponse response;
  };
  struct Call;

  void connect(sd_bus* bus);
  void disconnect();
  void findServer(sd_bus* bus);
  void serverIs(std::string name);
  void show(const PendingNotification& entry);
  void showAnew();
  void remember(const PendingNotification& entry);
  void hasShown(const PendingNotification& shown, std::uint32_t number);
  void chosen(std::uint32_t number, const std::string& action);
  void closed(std::uint32_t number);
  void answer(PendingNotification notification, UserNotificationResponse response);
  void handOver();
  using Reply = std::function<void(sd_bus_message* reply)>;  // null: none came
  bool call(const MessagePointer& request, std::chrono::microseconds timeout, Reply reply);
  static int onReply(sd_bus_message* message, void* call, sd_bus_error* error);
  static int onAction(sd_bus_message* message, void* notifications, sd_bus_error* error);
  static int onClosed(sd_bus_message* message, void* notifications, sd_bus_error* error);
  static int onOwner(sd_bus_message* message, void* notifications, sd_bus_error* error);

  BusConnection& sessionBus_;
  LinuxRunLoop& runLoop_;
  PendingNotifications pending_;
  std::map<std::string, std::vector<UserNotificationAction>> categories_;
  ResponseHandler handler_;
  std::deque<Answer> answers_;  // that nobody has taken yet
  std::map<std::uint32_t, std::unique_ptr<Timer>> closings_;
  std::map<std::uint64_t, std::unique_ptr<Call>> calls_;  // under way
  std::uint64_t lastCall_ = 0;
  bool bodyIsMarkup_ = false;
  sd_bus* bus_ = nullptr;
  std::vector<SlotPointer> slots_;
};

}  // namespace kestro
