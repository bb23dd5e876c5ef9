// How much of today is in the activities of a database.
#pragma once

#include <optional>

#include "foundation/Date.h"

namespace SQLite {
class Database;
}

namespace kestro {

class Process;

// Since midnight in the user's time zone, what is not written yet left out; absent when the
// database fails.
std::optional<Seconds> trackedTimeToday(Process& process, SQLite::Database& database);

}  // namespace kestro
