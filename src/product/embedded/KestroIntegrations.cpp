#include "product/KestroIntegrations.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include "platform/Clock.h"
#include "platform/Process.h"
#include "product/DatabaseWrapper.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {
namespace {

// The outcome that the product's conditions give; absent: that of the database.
std::optional<PostSyncOutcome> conditionalOutcome(const Process& process) {
  const PropertyList* given = process.platform().productConditions.find("integrations");
  const auto* fields = given ? given->get<PropertyListDictionary>() : nullptr;
  if (!fields) return std::nullopt;
  if (const PropertyList* error = fields->find("error")) {
    const auto* text = error->get<std::string>();
    return IntegrationsError{text ? *text : ""};
  }
  const PropertyList* success = fields->find("success");
  const bool* isSuccessful = success ? success->get<bool>() : nullptr;
  return isSuccessful ? std::optional<PostSyncOutcome>(*isSuccessful) : std::nullopt;
}

double secondsOf(Date date) {
  return Seconds(date.time_since_epoch()).count();
}

}  // namespace

bool KestroIntegrationsDatabaseAdapter::markUpdated(
    const std::optional<std::vector<std::string>>& identifiers) const {
  if (!facade_.isOpen()) return false;
  SQLite::Database& database = facade_.db();
  const double now = secondsOf(process_.platform().clock.now());
  if (!identifiers) {
    SQLite::Statement all(database, "UPDATE integrations SET updated_at = ?");
    all.bind(1, now);
    return all.exec() > 0;
  }
  int updated = 0;
  for (const std::string& identifier : *identifiers) {
    SQLite::Statement one(database, "UPDATE integrations SET updated_at = ? WHERE name = ?");
    one.bind(1, now);
    one.bind(2, identifier);
    updated += one.exec();
  }
  return updated > 0;
}

void IntegrationsUpdater::updateIntegrations(
    const std::optional<std::vector<std::string>>& identifiers, const Completion& completion) {
  recordOperation(adapter_.process(), "IntegrationsUpdater updateIntegrations",
                  identifiers ? PropertyListArray{*identifiers} : PropertyListArray{});
  if (const auto given = conditionalOutcome(adapter_.process())) return completion(*given);
  PostSyncOutcome outcome = false;
  try {
    outcome = adapter_.markUpdated(identifiers);
  } catch (const SQLite::Exception& failure) {
    adapter_.database().noteReadFailure(failure);
    outcome = IntegrationsError{failure.getErrorStr()};
  }
  completion(outcome);
}

void IntegrationsSampleDataSource::generate(SQLite::Database& database, Date now) const {
  const PropertyList* value = config_.find("names");
  const auto* names = value ? value->get<PropertyListArray>() : nullptr;
  if (!names) return;
  for (const PropertyList& name : *names) {
    const auto* text = name.get<std::string>();
    if (!text) continue;
    SQLite::Statement add(database,
                          "INSERT OR IGNORE INTO integrations (name, updated_at) VALUES (?, ?)");
    add.bind(1, *text);
    add.bind(2, secondsOf(now));
    add.exec();
  }
}

}  // namespace kestro
