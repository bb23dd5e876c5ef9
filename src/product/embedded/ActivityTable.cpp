#include "product/embedded/ActivityTable.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kestro {
namespace {

// Makes a statement ready for its next use, also after a failure: one left open would hold its
// transaction open.
class ResetAtEnd {
 public:
  explicit ResetAtEnd(SQLite::Statement& statement) : statement_(statement) {}
  ~ResetAtEnd() { statement_.tryReset(); }
  ResetAtEnd(const ResetAtEnd&) = delete;
  ResetAtEnd& operator=(const ResetAtEnd&) = delete;

 private:
  SQLite::Statement& statement_;
};

double seconds(Instant time) {
  return static_cast<double>(time.time_since_epoch().count()) / 1000.0;
}

Instant instantOfSeconds(double seconds) {
  return Instant(std::chrono::milliseconds(std::llround(seconds * 1000.0)));
}

void bindText(SQLite::Statement& statement, int index, const std::optional<std::string>& text) {
  if (text) {
    statement.bindNoCopy(index, *text);
  } else {
    statement.bind(index);
  }
}

// The first column of the statement's only row.
std::optional<Instant> onlyInstant(SQLite::Statement& statement) {
  if (!statement.executeStep()) return std::nullopt;
  return instantOfSeconds(statement.getColumn(0).getDouble());
}

}  // namespace

ActivityTable::ActivityTable(SQLite::Database& database)
    : database_(database),
      insert_(database,
              "INSERT INTO activities (start, end, application_bundle_identifier, application_name,"
              " application_executable_url, application_process_identifier, is_fullscreen,"
              " is_showing_save_panel, window_title, document_title, document_path, context_path,"
              " is_private_browsing) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
      updateEnd_(database, "UPDATE activities SET end = ? WHERE id = ?"),
      remove_(database, "DELETE FROM activities WHERE id = ?"),
      lastRowStartingUntil_(
          database, "SELECT end FROM activities WHERE start <= ? ORDER BY start DESC LIMIT 1"),
      firstRowStartingFrom_(
          database, "SELECT start FROM activities WHERE start >= ? ORDER BY start LIMIT 1") {}

void ActivityTable::save(std::deque<ActivityRow>& rows) {
  std::vector<std::int64_t> identifiers;
  SQLite::Transaction transaction(database_, SQLite::TransactionBehavior::IMMEDIATE);
  for (const ActivityRow& row : rows) {
    const bool isThere = row.identifier && (!row.isUnsaved || update(row));
    identifiers.push_back(isThere ? *row.identifier : insert(row));
  }
  transaction.commit();
  for (std::size_t index = 0; index < rows.size(); ++index) {
    rows[index].identifier = identifiers[index];
    rows[index].isUnsaved = false;
  }
}

std::int64_t ActivityTable::insert(const ActivityRow& row) {
  const ResetAtEnd reset(insert_);
  const ActivityFields& fields = row.fields;
  int index = 0;
  insert_.bind(++index, seconds(row.start));
  insert_.bind(++index, seconds(row.end));
  bindText(insert_, ++index, fields.applicationBundleIdentifier);
  bindText(insert_, ++index, fields.applicationName);
  bindText(insert_, ++index, fields.applicationExecutableURL);
  insert_.bind(++index, fields.applicationProcessIdentifier);
  insert_.bind(++index, fields.isFullscreen ? 1 : 0);
  insert_.bind(++index, fields.isShowingSavePanel ? 1 : 0);
  bindText(insert_, ++index, fields.windowTitle);
  bindText(insert_, ++index, fields.documentTitle);
  bindText(insert_, ++index, fields.documentPath);
  bindText(insert_, ++index, fields.contextPath);
  insert_.bind(++index, fields.isPrivateBrowsing ? 1 : 0);
  insert_.exec();
  return database_.getLastInsertRowid();
}

bool ActivityTable::update(const ActivityRow& row) {
  if (row.start == row.end) {
    remove(*row.identifier);
    return true;
  }
  const ResetAtEnd reset(updateEnd_);
  updateEnd_.bind(1, seconds(row.end));
  updateEnd_.bind(2, *row.identifier);
  return updateEnd_.exec() > 0;
}

void ActivityTable::remove(std::int64_t identifier) {
  const ResetAtEnd reset(remove_);
  remove_.bind(1, identifier);
  remove_.exec();
}

std::optional<Instant> ActivityTable::latestEnd() {
  const ResetAtEnd reset(lastRowStartingUntil_);
  lastRowStartingUntil_.bind(1, seconds(Instant::max()));
  return onlyInstant(lastRowStartingUntil_);
}

std::optional<TimeSpan> ActivityTable::freeTime(Instant start, Instant end) {
  const ResetAtEnd resetLast(lastRowStartingUntil_);
  const ResetAtEnd resetFirst(firstRowStartingFrom_);
  lastRowStartingUntil_.bind(1, seconds(start));
  // Rows do not overlap, so only the one that started last can reach beyond `start`.
  start = std::max(start, onlyInstant(lastRowStartingUntil_).value_or(start));
  firstRowStartingFrom_.bind(1, seconds(start));
  const Instant limit = onlyInstant(firstRowStartingFrom_).value_or(Instant::max());
  if (start >= end || start >= limit) return std::nullopt;
  return TimeSpan{start, limit};
}

}  // namespace kestro
