#include <algorithm>

#include "product/TimeEntries.h"
#include "product/embedded/TimeEntryTable.h"

namespace kestro {

TaskActivity TaskActivityDescriptor::createTaskActivity(Process& process, SQLite::Database& mutator,
                                                        bool preventTooShortDurations) const {
  constexpr std::chrono::minutes shortest{1};
  TaskActivityDescriptor complete = *this;
  // A user who has typed them the wrong way round meant this.
  if (end < start) std::swap(complete.start, complete.end);
  if (preventTooShortDurations) complete.end = std::max(complete.end, complete.start + shortest);
  TaskActivity entry = TimeEntryTable(mutator).insert(complete);
  recordTimeEntry(process, entry);
  return entry;
}

}  // namespace kestro
