#include "product/embedded/TrackedTime.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include "platform/Clock.h"
#include "platform/Process.h"
#include "product/DatabaseWrapper.h"

namespace kestro {

std::optional<Seconds> trackedTimeToday(Process& process, SQLite::Database& database) {
  const Date now = process.platform().clock.now();
  const Seconds midnight = process.platform().timeZone.midnight(now, 0).time_since_epoch();
  try {
    SQLite::Statement statement(
        database, "SELECT total(end - max(start, ?1)) FROM activities WHERE end > ?1");
    statement.bind(1, midnight.count());
    statement.executeStep();
    return Seconds(statement.getColumn(0).getDouble());
  } catch (const SQLite::Exception& failure) {
    auto* wrapper = DatabaseWrapper::openSharedInstance(process);
    if (wrapper) wrapper->noteReadFailure(failure);
    return std::nullopt;
  }
}

}  // namespace kestro
