// Time entries, projects and the timer in the database. Every operation may throw
// SQLite::Exception; writes belong into a transaction of the caller's.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include "product/TimeEntries.h"

namespace kestro {

class TimeEntryTable {
 public:
  explicit TimeEntryTable(SQLite::Database& database) : database_(database) {}

  TaskActivity insert(const TaskActivityDescriptor& entry);
  void update(const TaskActivity& entry);
  // The entry that began last; absent when there is none.
  std::optional<TaskActivity> latest();
  // Titles and projects of the latest entries that have either, each pair once.
  std::vector<TaskActivityDescriptor> latestKinds(int most);

  // The first entry that shares time with this one, but for `except`; absent: none does.
  std::optional<TaskActivity> entryWithin(Date start, Date end, std::optional<std::int64_t> except);
  std::vector<std::string> projectNames();
  // Each once, the latest first.
  std::vector<std::string> latestTitles(int most);
  std::optional<RunningTimer> runningTimer();
  // Instead of the one that runs.
  void startTimer(const RunningTimer& timer);
  void endTimer();

  // Of the latest entry that has one.
  std::optional<Project> latestProjectOfProvenance(const std::string& provenance);
  std::optional<Project> latestProjectOfTitle(const std::string& title);

 private:
  std::optional<std::int64_t> projectIdentifier(const std::optional<std::string>& name);
  std::optional<Project> latestProject(const char* column, const std::string& value);

  SQLite::Database& database_;
};

// The entry as the transcript shows it.
void recordTimeEntry(Process& process, const TaskActivity& entry);

}  // namespace kestro
