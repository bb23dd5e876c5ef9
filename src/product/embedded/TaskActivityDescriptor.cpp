#include <algorithm>

#include "platform/Process.h"
#include "platform/Transcript.h"
#include "product/TimeEntries.h"
#include "product/embedded/TimeEntryTable.h"

namespace kestro {

std::optional<TaskActivity> TaskActivityDescriptor::createTaskActivity(
    Process& process, SQLite::Database& mutator, bool preventTooShortDurations) const {
  constexpr std::chrono::minutes shortest{1};
  if (end < start) return std::nullopt;
  TaskActivityDescriptor complete = *this;
  if (preventTooShortDurations) complete.end = std::max(end, start + shortest);
  const TaskActivity entry = TimeEntryTable(mutator).insert(complete);
  recordTimeEntry(process, entry);
  return entry;
}

}  // namespace kestro
