// Exchanges the database with a server: part of the product's user-interface library. The embedded
// product has no server, so that a sync exchanges nothing, but what follows a sync follows it. Main
// thread only.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <variant>

#include "foundation/Date.h"
#include "platform/NotificationCenter.h"

namespace kestro {

class ActivityWriter;
class Process;
class Timer;

// What an update of the integrations came to: whether it changed something, or why it failed.
struct IntegrationsError {
  std::string description;
};
using PostSyncOutcome = std::variant<bool, IntegrationsError>;

// What is done after each sync.
class PostSyncUpdater {
 public:
  virtual ~PostSyncUpdater() = default;
  virtual void performPostSyncUpdate(std::function<void(const PostSyncOutcome&)> completion) = 0;
};

class SyncManager {
 public:
  // The writer, which may be null, must outlive it.
  SyncManager(Process& process, ActivityWriter* activityWriter);
  ~SyncManager();
  SyncManager(const SyncManager&) = delete;
  SyncManager& operator=(const SyncManager&) = delete;

  // Syncs after the delay; a request replaces one that is still waiting.
  void dispatchSyncRequest(Seconds delay);

 private:
  void sync();

  Process& process_;
  ActivityWriter* activityWriter_;
  std::unique_ptr<Timer> nextSync_;
  bool hasToldOfMissingServer_ = false;
  NotificationCenter::Observation request_;
};

}  // namespace kestro
