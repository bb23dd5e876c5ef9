// The operations of the product's integrations library that the helper uses. An integration is
// another service whose projects the product knows. Main thread only.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "foundation/PropertyList.h"
#include "product/SampleData.h"
#include "product/SyncManager.h"

namespace SQLite {
class Database;
}

namespace kestro {

class Process;

class DatabaseWrapper;

// The integrations in the database of the facade, which must outlive it. The facade may replace the
// database meanwhile.
class KestroIntegrationsDatabaseAdapter {
 public:
  KestroIntegrationsDatabaseAdapter(Process& process, DatabaseWrapper& facade)
      : process_(process), facade_(facade) {}

  Process& process() const { return process_; }
  DatabaseWrapper& database() const { return facade_; }
  // Notes that they are up to date now, all or those given. False when there are none, or no
  // database. Throws SQLite::Exception.
  bool markUpdated(const std::optional<std::vector<std::string>>& identifiers) const;

 private:
  Process& process_;
  DatabaseWrapper& facade_;
};

class IntegrationsUpdater {
 public:
  using Completion = std::function<void(const PostSyncOutcome&)>;

  explicit IntegrationsUpdater(const KestroIntegrationsDatabaseAdapter& adapter)
      : adapter_(adapter) {}

  // All integrations without identifiers. The product's condition `integrations` gives another
  // outcome.
  void updateIntegrations(const std::optional<std::vector<std::string>>& identifiers,
                          const Completion& completion);

 private:
  KestroIntegrationsDatabaseAdapter adapter_;
};

class IntegrationsSampleDataSource final : public SampleDataSource {
 public:
  // `config`: the names of the sample integrations, under "names"; others are ignored.
  explicit IntegrationsSampleDataSource(PropertyListDictionary config)
      : config_(std::move(config)) {}
  std::string_view name() const override { return "integrations"; }
  void generate(SQLite::Database& database, Date now) const override;

 private:
  PropertyListDictionary config_;
};

}  // namespace kestro
