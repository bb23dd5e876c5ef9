#include "product/SyncManager.h"

#include <fmt/format.h>

#include <utility>

#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"
#include "product/ActivityWriter.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {

SyncManager::SyncManager(Process& process, ActivityWriter* activityWriter)
    : process_(process),
      activityWriter_(activityWriter),
      request_(process.platform().notificationCenter.observe(productNotification::syncRequested,
                                                             [this](const auto&) { sync(); })) {}

SyncManager::~SyncManager() = default;

void SyncManager::dispatchSyncRequest(Seconds delay) {
  recordOperation(process_, "SyncManager dispatchSyncRequestWithDelay", {delay.count()});
  nextSync_ = process_.platform().runLoop.scheduleAfter(delay, [this] { sync(); });
}

void SyncManager::sync() {
  if (!std::exchange(hasToldOfMissingServer_, true)) {
    process_.platform().log.write("There is no server to sync with; data stays on this machine.");
  }
  PostSyncUpdater* updater = activityWriter_ ? activityWriter_->postSyncUpdater() : nullptr;
  if (!updater) return;
  updater->performPostSyncUpdate([&process = process_](const PostSyncOutcome& outcome) {
    if (const auto* error = std::get_if<IntegrationsError>(&outcome)) {
      process.platform().log.write(
          fmt::format("The integrations could not be updated: {}", error->description));
    }
  });
}

}  // namespace kestro
