#include "product/embedded/TimeEntryTable.h"

#include <fmt/format.h>

#include <cmath>

#include "platform/Process.h"
#include "platform/Transcript.h"

namespace kestro {
namespace {

double seconds(Date date) {
  const auto milliseconds =
      std::chrono::round<std::chrono::milliseconds>(date).time_since_epoch().count();
  return static_cast<double>(milliseconds) / 1000.0;
}

Date date(double seconds) {
  return Date(std::chrono::round<std::chrono::milliseconds>(Seconds(seconds)));
}

std::optional<std::string> text(const SQLite::Column& column) {
  return column.isNull() ? std::nullopt : std::optional(column.getString());
}

void bind(SQLite::Statement& statement, int index, const std::optional<std::string>& text) {
  if (text) statement.bind(index, *text);
}

// Of columns id, start, end, title, project.
std::optional<TaskActivity> firstEntry(SQLite::Statement& statement) {
  if (!statement.executeStep()) return std::nullopt;
  return TaskActivity{statement.getColumn(0).getInt64(), date(statement.getColumn(1).getDouble()),
                      date(statement.getColumn(2).getDouble()), text(statement.getColumn(3)),
                      text(statement.getColumn(4))};
}

std::vector<std::string> texts(SQLite::Statement& statement) {
  std::vector<std::string> list;
  while (statement.executeStep())
    list.push_back(statement.getColumn(0).getString());
  return list;
}

}  // namespace

TaskActivity TimeEntryTable::insert(const TaskActivityDescriptor& entry) {
  const auto project = projectIdentifier(entry.project);
  SQLite::Statement statement(database_,
                              "INSERT INTO time_entries (start, end, title, project_id, provenance)"
                              " VALUES (?, ?, ?, ?, ?)");
  statement.bind(1, seconds(entry.start));
  statement.bind(2, seconds(entry.end));
  bind(statement, 3, entry.title);
  if (project) statement.bind(4, *project);
  bind(statement, 5, entry.provenance);
  statement.exec();
  return {database_.getLastInsertRowid(), entry.start, entry.end, entry.title, entry.project};
}

void TimeEntryTable::update(const TaskActivity& entry) {
  const auto project = projectIdentifier(entry.project);
  SQLite::Statement statement(
      database_,
      "UPDATE time_entries SET start = ?, end = ?, title = ?, project_id = ? WHERE id = ?");
  statement.bind(1, seconds(entry.start));
  statement.bind(2, seconds(entry.end));
  bind(statement, 3, entry.title);
  if (project) statement.bind(4, *project);
  statement.bind(5, entry.identifier);
  statement.exec();
}

std::optional<TaskActivity> TimeEntryTable::latest() {
  SQLite::Statement statement(
      database_,
      "SELECT time_entries.id, start, end, title, projects.name FROM time_entries"
      " LEFT JOIN projects ON projects.id = project_id ORDER BY start DESC, time_entries.id DESC"
      " LIMIT 1");
  return firstEntry(statement);
}

std::vector<TaskActivityDescriptor> TimeEntryTable::latestKinds(int most) {
  SQLite::Statement statement(database_,
                              "SELECT max(start), max(end), title, projects.name FROM time_entries"
                              " LEFT JOIN projects ON projects.id = project_id"
                              " WHERE title IS NOT NULL OR project_id IS NOT NULL"
                              " GROUP BY title, project_id ORDER BY max(start) DESC LIMIT ?");
  statement.bind(1, most);
  std::vector<TaskActivityDescriptor> kinds;
  while (statement.executeStep()) {
    kinds.push_back({date(statement.getColumn(0).getDouble()),
                     date(statement.getColumn(1).getDouble()), text(statement.getColumn(2)),
                     text(statement.getColumn(3))});
  }
  return kinds;
}

std::optional<TaskActivity> TimeEntryTable::entryWithin(Date start, Date end,
                                                        std::optional<std::int64_t> except) {
  SQLite::Statement statement(
      database_,
      "SELECT time_entries.id, start, end, title, projects.name FROM time_entries"
      " LEFT JOIN projects ON projects.id = project_id"
      " WHERE start < ? AND end > ? AND time_entries.id != ? ORDER BY start LIMIT 1");
  statement.bind(1, seconds(end));
  statement.bind(2, seconds(start));
  statement.bind(3, except.value_or(-1));
  return firstEntry(statement);
}

std::vector<std::string> TimeEntryTable::projectNames() {
  SQLite::Statement statement(database_, "SELECT name FROM projects ORDER BY name COLLATE NOCASE");
  return texts(statement);
}

std::vector<std::string> TimeEntryTable::latestTitles(int most) {
  SQLite::Statement statement(database_,
                              "SELECT title FROM time_entries WHERE title IS NOT NULL"
                              " GROUP BY title ORDER BY max(start) DESC LIMIT ?");
  statement.bind(1, most);
  return texts(statement);
}

std::optional<RunningTimer> TimeEntryTable::runningTimer() {
  SQLite::Statement statement(database_,
                              "SELECT start, title, projects.name FROM running_timer"
                              " LEFT JOIN projects ON projects.id = project_id");
  if (!statement.executeStep()) return std::nullopt;
  return RunningTimer{date(statement.getColumn(0).getDouble()), text(statement.getColumn(1)),
                      text(statement.getColumn(2))};
}

void TimeEntryTable::startTimer(const RunningTimer& timer) {
  const auto project = projectIdentifier(timer.project);
  SQLite::Statement statement(
      database_,
      "INSERT OR REPLACE INTO running_timer (id, start, title, project_id) VALUES (1, ?, ?, ?)");
  statement.bind(1, seconds(timer.start));
  bind(statement, 2, timer.title);
  if (project) statement.bind(3, *project);
  statement.exec();
}

void TimeEntryTable::endTimer() {
  database_.exec("DELETE FROM running_timer");
}

std::optional<std::int64_t> TimeEntryTable::projectIdentifier(
    const std::optional<std::string>& name) {
  if (!name || name->empty()) return std::nullopt;
  SQLite::Statement add(database_, "INSERT OR IGNORE INTO projects (name) VALUES (?)");
  add.bind(1, *name);
  add.exec();
  SQLite::Statement find(database_, "SELECT id FROM projects WHERE name = ?");
  find.bind(1, *name);
  find.executeStep();
  return find.getColumn(0).getInt64();
}

std::optional<Project> TimeEntryTable::latestProjectOfProvenance(const std::string& provenance) {
  return latestProject("provenance", provenance);
}

std::optional<Project> TimeEntryTable::latestProjectOfTitle(const std::string& title) {
  return latestProject("title", title);
}

std::optional<Project> TimeEntryTable::latestProject(const char* column, const std::string& value) {
  SQLite::Statement statement(database_,
                              fmt::format("SELECT projects.id, projects.name FROM time_entries"
                                          " JOIN projects ON projects.id = project_id WHERE {} = ?"
                                          " ORDER BY start DESC LIMIT 1",
                                          column));
  statement.bind(1, value);
  if (!statement.executeStep()) return std::nullopt;
  return Project{statement.getColumn(0).getInt64(), statement.getColumn(1).getString()};
}

void recordTimeEntry(Process& process, const TaskActivity& entry) {
  Transcript& transcript = process.platform().transcript;
  if (!transcript.isActive()) return;
  PropertyListDictionary fields;
  fields.setIfPresent("title", entry.title);
  fields.set("start", entry.start);
  fields.set("end", entry.end);
  fields.setIfPresent("project", entry.project);
  transcript.record("timeEntry", std::move(fields));
}

}  // namespace kestro
