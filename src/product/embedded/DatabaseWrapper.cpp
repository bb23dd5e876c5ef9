#include "product/DatabaseWrapper.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include <array>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/LocalizedStrings.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"
#include "product/ActivityWriter.h"
#include "product/embedded/AutomaticBackup.h"
#include "product/embedded/DatabaseMigrations.h"
#include "product/embedded/FileLock.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {
namespace {

namespace fs = std::filesystem;

// The main application writes now and then; the run loop must not stand still for long.
constexpr int busyTimeoutInMilliseconds = 250;
constexpr std::array<std::string_view, 3> companionSuffixes{"", "-wal", "-shm"};

fs::path companion(const fs::path& file, std::string_view suffix) {
  fs::path path = file;
  path += suffix;
  return path;
}

// SQLite gives its companion files the mode of the database itself.
void makePrivate(const fs::path& file) {
  for (const std::string_view suffix : companionSuffixes) {
    const fs::path path = companion(file, suffix);
    if (fs::exists(path)) {
      fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    }
  }
}

// An empty file is an empty database, and has its mode before anything is in it.
void createIfMissing(const fs::path& file) {
  if (fs::exists(file)) return;
  if (!std::ofstream(file)) throw std::runtime_error("the file cannot be made");
  makePrivate(file);
}

// The one failure that does not pass.
class NewerSchema : public std::runtime_error {
 public:
  explicit NewerSchema(int version)
      : std::runtime_error(fmt::format("its schema has version {}, newer than this program's {}",
                                       version, latestSchemaVersion())) {}
};

std::unique_ptr<SQLite::Database> openedDatabase(const fs::path& file) {
  createIfMissing(file);
  auto database = std::make_unique<SQLite::Database>(file.string(), SQLite::OPEN_READWRITE,
                                                     busyTimeoutInMilliseconds);
  const int version = database->execAndGet("PRAGMA user_version");
  if (version > latestSchemaVersion()) throw NewerSchema(version);
  makePrivate(file);
  database->exec(
      "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON");
  migrateDatabase(*database);
  return database;
}

fs::path pathForDamaged(const fs::path& file, Date now) {
  const auto time = fmt::gmtime(std::chrono::system_clock::to_time_t(now));
  const std::string name = fmt::format("{}.damaged-{:%Y%m%dT%H%M%SZ}", file.stem().string(), time);
  fs::path path = file.parent_path() / (name + file.extension().string());
  for (int copy = 2; fs::exists(path); ++copy) {
    path.replace_filename(fmt::format("{}-{}{}", name, copy, file.extension().string()));
  }
  return path;
}

// The log left beside a new database would be taken for its own, so it moves too.
void moveAside(Process& process, const fs::path& file) {
  const fs::path aside = pathForDamaged(file, process.platform().clock.now());
  for (const std::string_view suffix : companionSuffixes) {
    if (fs::exists(companion(file, suffix))) {
      fs::rename(companion(file, suffix), companion(aside, suffix));
    }
  }
  process.platform().log.write(
      fmt::format("The database is damaged. It is kept as {}, and a new one begun.",
                  aside.filename().string()));
}

// The database wrapper of a process, once it could be opened.
class SharedDatabase {
 public:
  explicit SharedDatabase(Process& process)
      : process_(process), isWanted_(isPartPresent(process, "database")) {
    recordOperation(process, "DatabaseWrapper sharedInstance");
  }

  DatabaseWrapper* instance() {
    if (isWanted_ && process_.platform().clock.now() >= nextTry_) open();
    return instance_.get();
  }
  DatabaseWrapper* openInstance() const { return instance_.get(); }
  void clear() {
    recordOperation(process_, "DatabaseWrapper setSharedInstance", {false});
    if (instance_) instance_->close();
    isWanted_ = false;
    instance_.reset();
  }

 private:
  void open() {
    constexpr std::chrono::seconds timeBetweenTries{10};
    try {
      instance_ = std::make_unique<DatabaseWrapper>(
          process_, process_.platform().dataDirectory / "Kestro.sqlite");
      isWanted_ = false;
    } catch (const std::exception& failure) {
      isWanted_ = dynamic_cast<const NewerSchema*>(&failure) == nullptr;
      nextTry_ = process_.platform().clock.now() + timeBetweenTries;
      if (std::exchange(hasLoggedFailure_, true)) return;
      process_.platform().log.write(
          fmt::format("The database cannot be used, activities are not saved: {}", failure.what()));
    }
  }

  Process& process_;
  bool isWanted_;  // and not there yet
  Date nextTry_ = Date::min();
  bool hasLoggedFailure_ = false;
  std::unique_ptr<DatabaseWrapper> instance_;
};

}  // namespace

DatabaseWrapper* DatabaseWrapper::sharedInstance(Process& process) {
  return process.shared<SharedDatabase>().instance();
}

DatabaseWrapper* DatabaseWrapper::openSharedInstance(Process& process) {
  // Not made for a look, so that the one who opens it is seen to.
  return process.hasShared<SharedDatabase>() ? process.shared<SharedDatabase>().openInstance()
                                             : nullptr;
}

void DatabaseWrapper::clearSharedInstance(Process& process) {
  process.shared<SharedDatabase>().clear();
}

DatabaseWrapper::DatabaseWrapper(Process& process, const fs::path& file)
    : process_(process),
      file_(file),
      lock_(std::make_unique<FileLock>(fs::path(file).replace_extension("lock"))) {
  const auto makeWriter = [&] {
    if (isPartPresent(process_, "activityWriter")) {
      activityWriter_ = std::make_unique<ActivityWriter>(process_, *this);
    }
  };
  try {
    database_ = openedDatabase(file_);
    makeWriter();
  } catch (const SQLite::Exception& failure) {
    if (!isDamage(failure)) throw;
    database_.reset();
    moveAside(process_, file_);
    database_ = openedDatabase(file_);
    makeWriter();
  }
  syncManager_ = std::make_unique<SyncManager>(process_, activityWriter_.get());
}

DatabaseWrapper::~DatabaseWrapper() = default;

bool DatabaseWrapper::isDamage(const SQLite::Exception& failure) {
  return failure.getErrorCode() == SQLITE_NOTADB || failure.getErrorCode() == SQLITE_CORRUPT;
}

bool DatabaseWrapper::mutateOrPresentError(const Mutation& mutation) {
  if (!isOpen()) return false;
  try {
    SQLite::Transaction transaction(*database_, SQLite::TransactionBehavior::IMMEDIATE);
    mutation(*database_);
    transaction.commit();
    hasPresentedError_ = false;
    return true;
  } catch (const SQLite::Exception& failure) {
    presentError(failure);
    return false;
  }
}

// Once until a write works again: writes that wait are tried every few seconds. The user's own
// texts are no part of what the database says.
void DatabaseWrapper::presentError(const SQLite::Exception& failure) {
  if (std::exchange(hasPresentedError_, true)) return;
  process_.platform().log.write(
      fmt::format("A time entry cannot be saved now: {}", failure.getErrorStr()));
  if (isClosing_) return;
  process_.platform().alerts.runModal(
      {localizedString(process_, "Your time entry could not be saved yet."),
       localizedFormat(process_, "Kestro tries again until it works. The database says: %@",
                       failure.getErrorStr()),
       {localizedString(process_, "OK")}});
}

void DatabaseWrapper::mutateAsynchronouslyOrPresentError(Mutation mutation) {
  waitingMutations_.push_back(std::move(mutation));
  nextTry_ = process_.platform().runLoop.scheduleAfter(Seconds(0), [this] { finishMutations(); });
}

// Nobody is asked anything any more: an alert would hold up the end.
void DatabaseWrapper::close() {
  isClosing_ = true;
  finishMutations();
  if (waitingMutations_.empty()) return;
  process_.platform().log.write(fmt::format("{} changes of time entries could not be saved.",
                                            std::exchange(waitingMutations_, {}).size()));
}

void DatabaseWrapper::finishMutations() {
  constexpr Seconds timeBetweenTries{10};
  while (!waitingMutations_.empty() && mutateOrPresentError(waitingMutations_.front())) {
    waitingMutations_.pop_front();
  }
  nextTry_.reset();
  if (waitingMutations_.empty()) return;
  nextTry_ =
      process_.platform().runLoop.scheduleAfter(timeBetweenTries, [this] { finishMutations(); });
}

void DatabaseWrapper::createAutomaticBackup() {
  recordOperation(process_, "DatabaseWrapper createAutomaticBackup");
  if (!isOpen()) return;
  try {
    nextBackupStep_.reset();
    backup_.reset();
    backup_ = std::make_unique<AutomaticBackup>(*database_, file_.parent_path() / "Backups",
                                                process_.platform().clock.now());
    continueBackup();
  } catch (const std::exception& failure) {
    endBackup(failure);
  }
}

// A little at a time, so that the run loop goes on meanwhile.
void DatabaseWrapper::continueBackup() {
  constexpr Seconds pauseBetweenSteps{0.02};
  nextBackupStep_ = process_.platform().runLoop.scheduleAfter(pauseBetweenSteps, [this] {
    try {
      if (!backup_->copySome()) return continueBackup();
      backup_.reset();
    } catch (const std::exception& failure) {
      endBackup(failure);
    }
  });
}

void DatabaseWrapper::endBackup(const std::exception& failure) {
  nextBackupStep_.reset();
  backup_.reset();
  process_.platform().log.write(
      fmt::format("The database could not be backed up: {}", failure.what()));
}

void DatabaseWrapper::generateSampleDataIfNeeded(const SampleDataSources& sampleDataSources) {
  PropertyListArray names;
  for (const auto& source : sampleDataSources)
    names.emplace_back(source->name());
  recordOperation(process_, "DatabaseWrapper generateSampleDataIfNeeded", {std::move(names)});
  if (!sampleDataGeneratorConfig(process_).isWanted || !isOpen() || !isEmpty()) return;
  SQLite::Transaction transaction(*database_, SQLite::TransactionBehavior::IMMEDIATE);
  for (const auto& source : sampleDataSources)
    source->generate(*database_, process_.platform().clock.now());
  transaction.commit();
}

// Without anything that the user has done.
bool DatabaseWrapper::isEmpty() const {
  return database_
             ->execAndGet(
                 "SELECT EXISTS (SELECT 1 FROM activities)"
                 " OR EXISTS (SELECT 1 FROM time_entries)")
             .getInt() == 0;
}

void DatabaseWrapper::replaceDamaged() {
  nextBackupStep_.reset();
  backup_.reset();
  if (database_) {
    database_.reset();
    moveAside(process_, file_);
  }
  database_ = openedDatabase(file_);
}

}  // namespace kestro
