// The versions of the database's schema. The version of a file stands in its user_version.
#pragma once

namespace SQLite {
class Database;
}

namespace kestro {

int latestSchemaVersion();
// Brings the database from its version to the latest, each step in a transaction of its own. Throws
// SQLite::Exception; the steps before the failed one stay done.
void migrateDatabase(SQLite::Database& database);

}  // namespace kestro
