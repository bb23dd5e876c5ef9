// Copies of the database beside it, made while it is in use.
#pragma once

#include <filesystem>

#include "platform/Clock.h"

namespace SQLite {
class Database;
}

namespace kestro {

// Copies the database into the folder, which is made when it is missing, as
// "Kestro-20260302T090430Z.sqlite", readable by its owner alone, and removes the oldest copies
// beyond five. A copy that cannot be finished leaves nothing behind. Takes some 2 ms for a
// megabyte, in which the caller waits. Throws std::exception.
void backUpDatabase(SQLite::Database& database, const std::filesystem::path& folder, Date now);

}  // namespace kestro
