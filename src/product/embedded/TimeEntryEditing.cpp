// Editors of time entries, and the timer that keeps others from being offered.
#include <algorithm>

#include "platform/LocalizedStrings.h"
#include "platform/Process.h"
#include "platform/TimeEntryEditors.h"
#include "product/DatabaseWrapper.h"
#include "product/TimeEntries.h"
#include "product/embedded/TimeEntryTable.h"

namespace kestro {
namespace {

std::optional<std::string> nonEmpty(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional(text);
}

// A timer that the product's conditions say runs.
bool hasConditionalTimer(const Process& process) {
  const PropertyList* given = process.platform().productConditions.find("runningTimer");
  const bool* flag = given ? given->get<bool>() : nullptr;
  return given && (!flag || *flag);
}

}  // namespace

void AddOrEditTaskActivityController::presentEditorInPopoverSubstituteWindow(Process& process,
                                                                             bool obtainFocus,
                                                                             bool center) const {
  const TimeEntryEditorContents contents{headerLabel_, descriptor_.title.value_or(""),
                                         descriptor_.start, descriptor_.end, descriptor_.project};
  process.platform().timeEntryEditors.present(
      contents, {obtainFocus, center},
      [descriptor = descriptor_,
       handler = saveHandler_](const std::optional<TimeEntryEditorContents>& saved) {
        if (!saved || !handler) return;
        TaskActivityDescriptor edited = descriptor;
        edited.title = nonEmpty(saved->title);
        edited.start = saved->start;
        edited.end = saved->end;
        edited.project = saved->project;
        handler(edited);
      });
}

bool OngoingTaskActivityManager::hasRunningActivity() const {
  if (hasConditionalTimer(process_)) return true;
  DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process_);
  try {
    return database && database->isOpen() && TimeEntryTable(database->db()).hasRunningTimer();
  } catch (const SQLite::Exception&) {
    return false;
  }
}

void OngoingTaskActivityManager::editTaskActivity(const TaskActivity& activity, bool center) const {
  const TimeEntryEditorContents contents{localizedString(process_, "Edit Time Entry"),
                                         activity.title.value_or(""), activity.start, activity.end,
                                         activity.project};
  process_.platform().timeEntryEditors.present(
      contents, {.obtainFocus = true, .center = center},
      [&process = process_,
       identifier = activity.identifier](const std::optional<TimeEntryEditorContents>& saved) {
        DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process);
        if (!saved || !database) return;
        const auto [start, end] = std::minmax(saved->start, saved->end);
        const TaskActivity edited{identifier, start, end, nonEmpty(saved->title), saved->project};
        database->mutateAsynchronouslyOrPresentError([&process, edited](SQLite::Database& mutator) {
          TimeEntryTable(mutator).update(edited);
          recordTimeEntry(process, edited);
        });
      });
}

}  // namespace kestro
