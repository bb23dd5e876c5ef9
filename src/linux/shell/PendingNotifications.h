// The notifications that wait for an answer, kept in a file of the user's own, so that an answer
// given after a restart of the helper is still understood. Main thread only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/SystemLog.h"
#include "platform/UserNotifications.h"

namespace kestro {

struct PendingNotification {
  std::uint32_t number = 0;  // of the server's; 0: not shown yet
  UserNotification notification;
  // Its server is gone, or knows it as an earlier process's: it has to be shown again.
  bool isToBeShownAnew = false;
};

// Which server of which bus the numbers belong to.
struct NotificationServer {
  std::string bus;   // the bus's own identifier
  std::string name;  // of the connection, unique on that bus

  bool operator==(const NotificationServer&) const = default;
};

class PendingNotifications {
 public:
  // Reads the file. One that cannot be understood counts as empty.
  PendingNotifications(std::filesystem::path file, SystemLog& log);

  const NotificationServer& server() const { return server_; }
  std::vector<PendingNotification>& entries() { return entries_; }
  // The entry of that number; null: none.
  PendingNotification* find(std::uint32_t number);
  // Removes it, and hands it over.
  std::optional<PendingNotification> take(std::uint32_t number);

  void setServer(NotificationServer server) { server_ = std::move(server); }
  // To be called after every change.
  void save();

 private:
  std::filesystem::path file_;
  SystemLog& log_;
  bool hasReportedFailure_ = false;
  NotificationServer server_;
  std::vector<PendingNotification> entries_;
};

}  // namespace kestro
