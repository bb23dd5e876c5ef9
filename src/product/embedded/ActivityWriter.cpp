#include "product/ActivityWriter.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <type_traits>

#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"
#include "product/DatabaseWrapper.h"
#include "product/embedded/ActivityTable.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {
namespace {

using std::chrono::milliseconds;

constexpr Seconds flushInterval{10.0};
// How much later than expected a sample can be because other applications were slow to answer.
constexpr milliseconds messagingTimeout{2000};
// Hours of an outage in which something changes every few seconds.
constexpr std::size_t mostRowsHeldBack = 5000;

}  // namespace

struct ActivityWriter::State {
  State(Process& owner, DatabaseWrapper& wrapper)
      : process(owner),
        database(wrapper),
        table(std::in_place, wrapper.db()),
        interval(std::chrono::round<milliseconds>(samplingInterval(owner))),
        latestEnd(table->latestEnd().value_or(Instant::min())) {}

  bool continues(Instant time, const ActivityFields& fields) const;
  void begin(Instant time, ActivityFields fields);
  void extend(Instant time);
  void close(Instant time);
  std::optional<TimeSpan> freeTime(Instant start, Instant end);
  template <class Operation>
  std::invoke_result_t<Operation, ActivityTable&> onTable(Operation operation);
  void release();
  void keepToFreeTime();
  void setEnd(ActivityRow& row, Instant end);
  void scheduleFlush();
  bool save();
  void noteFailure(const std::exception& failure);
  void noteSuccess();
  void keepWithinBounds();

  Process& process;
  DatabaseWrapper& database;
  std::optional<ActivityTable> table;  // absent until something is asked of a new database
  milliseconds interval;
  std::deque<ActivityRow> rows;    // unsaved, and the open one, which is the last
  bool isOpen = false;             // whether the last row may still grow
  Instant lastSample;              // of the open row
  Instant limit = Instant::max();  // where the open row meets one that is recorded already
  Instant latestEnd;               // of all rows, recorded or held back
  bool isFailing = false;
  std::size_t droppedRows = 0;  // in this outage
  std::unique_ptr<Timer> flushTimer;
};

bool ActivityWriter::State::continues(Instant time, const ActivityFields& fields) const {
  return isOpen && time >= lastSample && time - lastSample <= 2 * interval + messagingTimeout &&
         time < limit && rows.back().fields == fields;
}

void ActivityWriter::State::begin(Instant time, ActivityFields fields) {
  TimeSpan span{time, Instant::max()};
  if (time < latestEnd) {
    const auto free = freeTime(time, time + interval);
    if (!free) return;
    span = *free;
  }
  limit = span.end;
  rows.push_back({std::move(fields), span.start, span.start, std::nullopt, true});
  isOpen = true;
  keepWithinBounds();
  extend(time);
}

void ActivityWriter::State::extend(Instant time) {
  lastSample = time;
  setEnd(rows.back(), std::min(time + interval, limit));
  latestEnd = std::max(latestEnd, rows.back().end);
}

// Ends the open row at a sample that does not continue it.
void ActivityWriter::State::close(Instant time) {
  if (!isOpen) return;
  isOpen = false;
  ActivityRow& row = rows.back();
  const bool isLatest = row.end == latestEnd;
  // When the clock went back, `time` says nothing about when the row ended.
  if (time >= lastSample && time < row.end) setEnd(row, std::max(time, row.start));
  if (isLatest) latestEnd = row.end;
  const bool isEmpty = !row.identifier && row.start == row.end;
  if (isEmpty || !row.isUnsaved) rows.pop_back();
}

// Asks the table, which then has to hold every row. One that refuses is not asked again before the
// next flush is due: every try may wait for a lock.
std::optional<TimeSpan> ActivityWriter::State::freeTime(Instant start, Instant end) {
  if ((isFailing && flushTimer) || !save()) return std::nullopt;
  try {
    const auto free =
        onTable([&](ActivityTable& rowsOnDisk) { return rowsOnDisk.freeTime(start, end); });
    noteSuccess();
    return free;
  } catch (const std::exception& failure) {
    noteFailure(failure);
    scheduleFlush();
    return std::nullopt;
  }
}

// On damage, and when the database was deleted or replaced, it is done on a new one instead.
template <class Operation>
std::invoke_result_t<Operation, ActivityTable&> ActivityWriter::State::onTable(
    Operation operation) {
  bool isDamaged = false;
  if (database.isOpen() && database.isInPlace()) {
    try {
      if (!table) table.emplace(database.db());
      return operation(*table);
    } catch (const SQLite::Exception& failure) {
      if (!DatabaseWrapper::isDamage(failure)) throw;
      isDamaged = true;
    }
  }
  database.openAnew(isDamaged);
  table.emplace(database.db());
  keepToFreeTime();
  return operation(*table);
}

// The database that has taken the other's place may be a copy of it, with some of these rows.
void ActivityWriter::State::keepToFreeTime() {
  const bool wasOpen = isOpen;
  std::erase_if(rows, [&](ActivityRow& row) {
    const auto free = table->freeTime(row.start, row.end);
    if (wasOpen && &row == &rows.back()) {
      isOpen = free.has_value();
      limit = free ? free->end : Instant::max();
    }
    if (!free) return true;
    row.start = free->start;
    row.end = std::min(row.end, free->end);
    return false;
  });
}

// The statements go before their database. The open row is written once more, as a whole.
void ActivityWriter::State::release() {
  table.reset();
  std::erase_if(rows, [](const ActivityRow& row) { return row.start == row.end; });
  for (ActivityRow& row : rows) {
    row.identifier.reset();
    row.isUnsaved = true;
  }
}

void ActivityWriter::State::setEnd(ActivityRow& row, Instant end) {
  if (row.end == end) return;
  row.end = end;
  row.isUnsaved = true;
  scheduleFlush();
}

void ActivityWriter::State::scheduleFlush() {
  if (flushTimer) return;
  flushTimer = process.platform().runLoop.scheduleAfter(flushInterval, [this] {
    flushTimer.reset();
    save();
  });
}

bool ActivityWriter::State::save() {
  if (std::ranges::none_of(rows, &ActivityRow::isUnsaved)) return true;
  try {
    onTable([&](ActivityTable& rowsOnDisk) { rowsOnDisk.save(rows); });
  } catch (const std::exception& failure) {
    noteFailure(failure);
    scheduleFlush();
    return false;
  }
  noteSuccess();
  rows.erase(rows.begin(), rows.end() - (isOpen ? 1 : 0));
  return true;
}

void ActivityWriter::State::noteFailure(const std::exception& failure) {
  if (isFailing) return;
  isFailing = true;
  process.platform().log.write(
      fmt::format("Activities cannot be saved now and are kept in memory: {}", failure.what()));
}

void ActivityWriter::State::noteSuccess() {
  if (!isFailing) return;
  isFailing = false;
  process.platform().log.write(
      fmt::format("Activities are saved again; {} were too many to keep.", droppedRows));
  droppedRows = 0;
}

void ActivityWriter::State::keepWithinBounds() {
  if (rows.size() <= mostRowsHeldBack) return;
  rows.pop_front();
  ++droppedRows;
}

ActivityWriter::ActivityWriter(Process& process, DatabaseWrapper& database)
    : state_(std::make_unique<State>(process, database)), taskActivityManager_(process) {}

ActivityWriter::~ActivityWriter() {
  flush();
}

void ActivityWriter::write(Date time, const Activity& activity) {
  ActivityFields fields(activity);
  const Instant sample = instant(time);
  if (state_->continues(sample, fields)) {
    state_->extend(sample);
    return;
  }
  state_->close(sample);
  state_->begin(sample, std::move(fields));
}

void ActivityWriter::writeNoActivity(Date time) {
  state_->close(instant(time));
}

void ActivityWriter::setPostSyncUpdater(std::unique_ptr<PostSyncUpdater> updater) {
  recordOperation(state_->process, "ActivityWriter setPostSyncUpdater", {updater != nullptr});
  postSyncUpdater_ = std::move(updater);
}

void ActivityWriter::releaseDatabase() {
  state_->release();
}

void ActivityWriter::close() {
  if (flush()) return;
  const auto lost = std::ranges::count_if(state_->rows, &ActivityRow::isUnsaved);
  state_->process.platform().log.write(fmt::format(
      "{} activities could not be saved.", static_cast<std::size_t>(lost) + state_->droppedRows));
  state_->rows.clear();
  state_->isOpen = false;
  state_->flushTimer.reset();
}

bool ActivityWriter::flush() {
  state_->flushTimer.reset();
  return state_->save();
}

}  // namespace kestro
