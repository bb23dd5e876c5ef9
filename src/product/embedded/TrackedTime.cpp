#include "product/embedded/TrackedTime.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include "platform/Process.h"

namespace kestro {
namespace {

Date lastMidnight(const Process& process) {
  const Date now = process.platform().clock.now();
  const TimeZone& zone = process.platform().timeZone;
  const auto midnight = std::chrono::floor<std::chrono::days>(now + zone.offset(now));
  return midnight - zone.offset(midnight - zone.offset(now));
}

}  // namespace

std::optional<Seconds> trackedTimeToday(Process& process, SQLite::Database& database) {
  const Seconds midnight = lastMidnight(process).time_since_epoch();
  try {
    SQLite::Statement statement(
        database, "SELECT total(end - max(start, ?1)) FROM activities WHERE end > ?1");
    statement.bind(1, midnight.count());
    statement.executeStep();
    return Seconds(statement.getColumn(0).getDouble());
  } catch (const SQLite::Exception&) {
    return std::nullopt;
  }
}

}  // namespace kestro
