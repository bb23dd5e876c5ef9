// Refreshes the user's integrations after each sync. Owned by the activity writer.
#pragma once

#include "product/KestroIntegrations.h"

namespace kestro {

class IntegrationsPostSyncUpdater final : public PostSyncUpdater {
 public:
  explicit IntegrationsPostSyncUpdater(const IntegrationsUpdater& integrationsUpdater)
      : integrationsUpdater_(integrationsUpdater) {}

  // All integrations.
  void performPostSyncUpdate(std::function<void(const PostSyncOutcome&)> completion) override {
    integrationsUpdater_.updateIntegrations(std::nullopt, completion);
  }

 private:
  IntegrationsUpdater integrationsUpdater_;
};

}  // namespace kestro
