// The product's database, "Kestro.sqlite" in the data directory: SQLite in WAL mode, readable by
// its owner alone. docs/database.md describes its tables. Main thread only.
#pragma once

#include <deque>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "foundation/PrivateFiles.h"
#include "product/SampleData.h"
#include "product/SyncManager.h"

namespace SQLite {
class Database;
class Exception;
}  // namespace SQLite

namespace kestro {

class ActivityWriter;
class AutomaticBackup;
class FileLock;
class Process;
class Timer;

class DatabaseWrapper {
 public:
  // The process's database, opened at the first call. Null when there is none: it could not be
  // opened, or its schema is none of this program's; a log line has said why. Unless it is the
  // schema, it is tried again after ten seconds: the disk may have room, or be there, by then.
  static DatabaseWrapper* sharedInstance(Process& process);
  // Posted inside the process when it opens.
  static constexpr std::string_view didOpenNotification = "KSDatabaseWrapperDidOpen";
  // The same without opening it: null as well when it is not open yet.
  static DatabaseWrapper* openSharedInstance(Process& process);
  // Saves what waits and closes it; there is none from now on.
  static void clearSharedInstance(Process& process);

  // Opens the file, makes it when there is none, and brings it to this version's schema. Other
  // helpers cannot open it while the wrapper lives. A file that is no database is moved aside and a
  // new one begun. Throws std::exception when there can be no database; no activity in it is lost.
  DatabaseWrapper(Process& process, const std::filesystem::path& file);
  ~DatabaseWrapper();
  DatabaseWrapper(const DatabaseWrapper&) = delete;
  DatabaseWrapper& operator=(const DatabaseWrapper&) = delete;

  // False after damage that could not be put right; there is no db() then.
  bool isOpen() const { return database_ != nullptr; }
  SQLite::Database& db() { return *database_; }
  static bool isDamage(const SQLite::Exception& failure);
  // Whether the file that is open is still the one of its name: it may have been deleted, moved, or
  // replaced by another. One look at the file system.
  bool isInPlace() const;
  // Closes the database and opens the file of its name, a new one when there is none; `isDamaged`:
  // after moving that aside. What the activity writer made of the old db() is given up first;
  // nothing else may hold anything of it. Throws std::exception when there can be no database;
  // there is no db() until a later call succeeds.
  void openAnew(bool isDamaged);
  // Runs a write in one transaction. False when it failed: the database is as it was then, and an
  // alert and a log line have said why, once until a write works again.
  using Mutation = std::function<void(SQLite::Database& mutator)>;
  bool mutateOrPresentError(const Mutation& mutation);
  // The same with the run loop's next task. While the database is busy or full the write waits and
  // is tried again every ten seconds; in the order of the calls, and for the last time at the end
  // (`close`).
  void mutateAsynchronouslyOrPresentError(Mutation mutation);
  // To be told of a read that failed: a damaged database is moved aside with the run loop's next
  // task.
  void noteReadFailure(const SQLite::Exception& failure);
  // Tries what waits now.
  void finishMutations();
  // As finishMutations, for the last time and without an alert, and the activities. What cannot be
  // saved is lost, and counted in the log. Also for the time before the end: no alert comes up from
  // then on.
  void close();

  // Null when the product has none.
  ActivityWriter* activityWriter() { return activityWriter_.get(); }
  SyncManager& syncManager() { return *syncManager_; }

  // Begins a copy of the database in the folder "Backups" beside it; the newest five stay. A log
  // line when it fails.
  void createAutomaticBackup();
  // Lets the sources fill an empty database, when sample data is wanted. Throws std::exception.
  void generateSampleDataIfNeeded(const SampleDataSources& sampleDataSources);

 private:
  bool isEmpty() const;
  void openDatabase();
  void mutate(const Mutation& mutation);
  void presentError(std::string_view reason);
  void continueBackup();
  void endBackup(const std::exception& failure);

  Process& process_;
  std::filesystem::path file_;
  std::unique_ptr<FileLock> lock_;  // "Kestro.lock" beside the file: rows have one writer
  std::unique_ptr<SQLite::Database> database_;
  std::optional<FileIdentity> identity_;  // of the file that is open
  std::unique_ptr<ActivityWriter> activityWriter_;
  std::unique_ptr<SyncManager> syncManager_;
  std::unique_ptr<AutomaticBackup> backup_;  // while one is made
  std::unique_ptr<Timer> nextBackupStep_;
  std::deque<Mutation> waitingMutations_;
  std::unique_ptr<Timer> nextTry_;
  std::unique_ptr<Timer> nextRepair_;
  bool hasPresentedError_ = false;
  bool isClosing_ = false;
};

}  // namespace kestro
