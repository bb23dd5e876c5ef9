// Time entries and what makes them: part of the product's user-interface library. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/Date.h"
#include "foundation/PropertyList.h"

namespace SQLite {
class Database;
}

namespace kestro {

class DatabaseWrapper;
struct MenuItem;
class Process;

struct Project {
  std::int64_t identifier;
  std::string name;
};

// A time entry that exists.
struct TaskActivity {
  std::int64_t identifier;
  Date start;
  Date end;
  std::optional<std::string> title;
  std::optional<std::string> project;  // by name
};

// The timer that runs now.
struct RunningTimer {
  Date start;
  std::optional<std::string> title;
  std::optional<std::string> project;  // by name
};

// A time entry to be made. Absent fields stay empty.
struct TaskActivityDescriptor {
  Date start;
  Date end;
  std::optional<std::string> title = std::nullopt;
  std::optional<std::string> project = std::nullopt;  // by name; a new one is made
  // What the entry is made from, such as the identifier of a call's application.
  std::optional<std::string> provenance = std::nullopt;

  // Within a mutation of the database. With `preventTooShortDurations` an entry of less than a
  // minute ends a minute after its start. Start and end that are the wrong way round are exchanged.
  TaskActivity createTaskActivity(Process& process, SQLite::Database& mutator,
                                  bool preventTooShortDurations) const;
};

// Proposes projects for time entries.
class TaskActivitySuggestionRanker {
 public:
  TaskActivitySuggestionRanker(Process& process, SQLite::Database& database)
      : process_(process), database_(database) {}

  // The project of the latest entry that has one, with the same provenance or else the same title.
  // Absent when there is none or the database fails.
  std::optional<Project> suggestProjectBasedOnProvenanceMetadata(
      const TaskActivityDescriptor& descriptor) const;

 private:
  Process& process_;
  SQLite::Database& database_;
};

// The editor of a time entry that does not exist yet.
class AddOrEditTaskActivityController {
 public:
  using SaveHandler = std::function<void(const TaskActivityDescriptor& descriptor)>;

  explicit AddOrEditTaskActivityController(TaskActivityDescriptor descriptor)
      : descriptor_(std::move(descriptor)) {}

  void setHeaderLabel(std::string text) { headerLabel_ = std::move(text); }
  // Called with what the user saved; not when the window is closed without.
  void setSaveHandler(SaveHandler handler) { saveHandler_ = std::move(handler); }

  // Shows it in a small floating window. What it needs to end goes with the window.
  void presentEditorInPopoverSubstituteWindow(Process& process, bool obtainFocus,
                                              bool center) const;

 private:
  TaskActivityDescriptor descriptor_;
  std::string headerLabel_;
  SaveHandler saveHandler_;
};

// The task timer, and edits of entries that exist.
class OngoingTaskActivityManager {
 public:
  explicit OngoingTaskActivityManager(Process& process) : process_(process) {}

  // Posted by those who want the user to start a timer.
  static constexpr std::string_view startTaskRequestedNotification =
      "OngoingTaskActivityManager.startTaskRequested";

  bool hasRunningActivity() const;
  // Absent when no timer runs.
  std::optional<RunningTimer> runningTimer() const;

  // Opens the editor; what the user saves runs from then on, instead of the timer that ran. An end
  // is nothing a timer has: what the editor says of it is ignored, here and for the running timer.
  void showEditorToStartTaskActivity() const;
  void startTaskActivity(const RunningTimer& timer) const;
  // The timer becomes a time entry. Nothing when none runs.
  void stopRunningActivity(bool showNotification, bool autoStopped) const;
  // Opens the editor on the running timer or else on the latest time entry, if there is one.
  void editRunningOrLatestTask() const;
  // Gives the menu's row the title of what it would edit, and the shortcut; hidden when there is
  // nothing.
  void updateEditRunningOrLatestTaskMenuItem(MenuItem& item) const;
  // Opens the editor on the entry; what the user saves changes it.
  void editTaskActivity(const TaskActivity& activity, bool center) const;

 private:
  std::optional<TaskActivity> endRunningTimer() const;
  void editRunningTimer(const RunningTimer& timer) const;

  Process& process_;
};

}  // namespace kestro
