// The table of activities, behind statements that are prepared once. Owned by the activity writer.
// Every operation may throw SQLite::Exception and has then changed nothing.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <deque>
#include <optional>

#include "product/embedded/ActivityRow.h"

namespace kestro {

struct TimeSpan {
  Instant start;
  Instant end;
};

class ActivityTable {
 public:
  explicit ActivityTable(SQLite::Database& database);

  // Writes the unsaved rows in one transaction, then marks them saved. One that has shrunk to
  // nothing is removed.
  void save(std::deque<ActivityRow>& rows);
  // The end of the latest row; absent in an empty table.
  std::optional<Instant> latestEnd();
  // The time from `start` on that no row covers, up to the next row (or without an end, which is
  // then Instant::max()). Absent when the rows leave nothing before `end`.
  std::optional<TimeSpan> freeTime(Instant start, Instant end);

 private:
  std::int64_t insert(const ActivityRow& row);
  // False when somebody has deleted the row.
  bool update(const ActivityRow& row);
  void remove(std::int64_t identifier);

  SQLite::Database& database_;
  SQLite::Statement insert_;
  SQLite::Statement updateEnd_;
  SQLite::Statement remove_;
  SQLite::Statement lastRowStartingUntil_;
  SQLite::Statement firstRowStartingFrom_;
};

}  // namespace kestro
