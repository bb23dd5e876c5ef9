#include "product/embedded/DatabaseMigrations.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>

#include <array>

namespace kestro {
namespace {

// The step at index n leads from version n to n + 1. Steps that have shipped never change.
constexpr std::array migrations{
    // Times are seconds since 1970 in UTC, in whole milliseconds.
    R"(
CREATE TABLE activities (
  id INTEGER PRIMARY KEY,
  start REAL NOT NULL,
  end REAL NOT NULL CHECK (end >= start),
  application_bundle_identifier TEXT,
  application_name TEXT,
  application_executable_url TEXT,
  application_process_identifier INTEGER NOT NULL,
  is_fullscreen INTEGER NOT NULL,
  is_showing_save_panel INTEGER NOT NULL,
  window_title TEXT,
  document_title TEXT,
  document_path TEXT,
  context_path TEXT, -- a JSON array of texts, most general first
  is_private_browsing INTEGER NOT NULL
);
CREATE INDEX activities_by_start ON activities (start);
)",
    // For people who look into the database with a shell.
    R"(
CREATE VIEW readable_activities AS
SELECT id, datetime(start, 'unixepoch', 'localtime') AS started_at,
  round(end - start, 3) AS duration, coalesce(application_name, application_bundle_identifier)
  AS application, window_title, document_title, document_path, context_path
FROM activities ORDER BY start;
)",
    R"(
CREATE TABLE projects (
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE
);
CREATE TABLE time_entries (
  id INTEGER PRIMARY KEY,
  start REAL NOT NULL,
  end REAL NOT NULL CHECK (end >= start),
  title TEXT,
  project_id INTEGER REFERENCES projects (id) ON DELETE SET NULL,
  provenance TEXT -- what the entry was made from: the identifier of a call's application
);
CREATE INDEX time_entries_by_start ON time_entries (start);
-- The timer that runs now: one row or none.
CREATE TABLE running_timer (
  id INTEGER PRIMARY KEY CHECK (id = 1),
  start REAL NOT NULL,
  title TEXT,
  project_id INTEGER REFERENCES projects (id) ON DELETE SET NULL
);
CREATE VIEW readable_time_entries AS
SELECT time_entries.id, datetime(start, 'unixepoch', 'localtime') AS started_at,
  round(end - start, 3) AS duration, title, projects.name AS project, provenance
FROM time_entries LEFT JOIN projects ON projects.id = project_id ORDER BY start;
)",
    R"(
CREATE TABLE integrations (
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  updated_at REAL -- absent before the first update
);
)",
};

}  // namespace

int latestSchemaVersion() {
  return static_cast<int>(migrations.size());
}

void migrateDatabase(SQLite::Database& database) {
  for (int version = database.execAndGet("PRAGMA user_version"); version < latestSchemaVersion();
       version = database.execAndGet("PRAGMA user_version")) {
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    // Another process may have taken the step while this one waited for the lock.
    if (database.execAndGet("PRAGMA user_version").getInt() != version) continue;
    database.exec(migrations[static_cast<std::size_t>(version)]);
    database.exec(fmt::format("PRAGMA user_version = {}", version + 1));
    transaction.commit();
  }
}

}  // namespace kestro
