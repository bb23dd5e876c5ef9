// A copy of the database beside it, made in small steps while the database is in use. Owned by the
// database wrapper; main thread only.
#pragma once

#include <filesystem>
#include <memory>

#include "foundation/Date.h"

namespace SQLite {
class Backup;
class Database;
}  // namespace SQLite

namespace kestro {

class AutomaticBackup {
 public:
  // The copy will be "Kestro-20260302T090430Z.sqlite" in the folder, which is made when it is
  // missing, readable by its owner alone. The database must outlive this. Throws std::exception.
  AutomaticBackup(SQLite::Database& database, std::filesystem::path folder, Date now);
  // A copy that is not finished leaves nothing behind.
  ~AutomaticBackup();
  AutomaticBackup(const AutomaticBackup&) = delete;
  AutomaticBackup& operator=(const AutomaticBackup&) = delete;

  // Copies a megabyte, which takes some milliseconds. True when that was the last; the oldest
  // copies beyond five are gone then. Throws std::exception.
  bool copySome();

 private:
  void finish();

  std::filesystem::path folder_;
  std::filesystem::path target_;
  std::filesystem::path unfinished_;
  std::unique_ptr<SQLite::Database> copy_;
  std::unique_ptr<SQLite::Backup> backup_;
  int busySteps_ = 0;
};

}  // namespace kestro
