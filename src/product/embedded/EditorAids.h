// What the editor of a time entry offers from the database, and what it may not save.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/TimeEntryEditors.h"

namespace kestro {

class Process;

enum class EditedThing { timeEntry, runningTimer };

// `edited`: the entry that is changed, which may cover its own time; absent for a new one. Without
// a database nothing is offered and nothing refused.
TimeEntryEditorAids editorAids(Process& process, EditedThing thing,
                               std::optional<std::int64_t> edited = std::nullopt);

}  // namespace kestro
