#include "product/DatabaseWrapper.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include <array>
#include <stdexcept>
#include <utility>

#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/LocalizedStrings.h"
#include "platform/NotificationCenter.h"
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

// SQLite gives its companion files the mode of the database itself. False when one is somebody
// else's: their mode stays as it is.
bool makePrivate(const fs::path& file) {
  std::error_code error;
  bool isPrivate = true;
  for (const std::string_view suffix : companionSuffixes) {
    const fs::path path = companion(file, suffix);
    if (!fs::exists(path)) continue;
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write, error);
    isPrivate = isPrivate && !error;
  }
  return isPrivate;
}

// The one failure that does not pass.
class UnknownSchema : public std::runtime_error {
 public:
  explicit UnknownSchema(int version)
      : std::runtime_error(fmt::format("its schema has version {}; this program knows 0 to {}",
                                       version, latestSchemaVersion())) {}
};

// An empty file is an empty database. Who has made a database read-only wants no writing in it.
void prepareFile(const fs::path& file) {
  makePrivateFolder(file.parent_path());
  if (!fs::exists(file)) return createPrivateFile(file);
  constexpr auto writable =
      fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  const bool isReadOnly = (fs::status(file).permissions() & writable) == fs::perms::none;
  if (isReadOnly || !isWritable(file)) throw std::runtime_error("the file is read-only");
}

std::unique_ptr<SQLite::Database> openedDatabase(const Process& process, const fs::path& file) {
  prepareFile(file);
  auto database = std::make_unique<SQLite::Database>(file.string(), SQLite::OPEN_READWRITE,
                                                     busyTimeoutInMilliseconds);
  const int version = database->execAndGet("PRAGMA user_version");
  if (version < 0 || version > latestSchemaVersion()) throw UnknownSchema(version);
  if (!makePrivate(file)) {
    process.platform().log.write(
        "The database belongs to somebody else; who may read it stays as it is.");
  }
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
  makePrivate(aside);
  process.platform().log.write(
      fmt::format("The database is damaged. It is kept as {}, and a new one begun.",
                  aside.filename().string()));
}

fs::path lockFileOf(const fs::path& file) {
  return fs::path(file).replace_extension("lock");
}

// The database wrapper of a process, once it could be opened.
class SharedDatabase {
 public:
  explicit SharedDatabase(Process& process)
      : process_(process), isWanted_(isPartPresent(process, "database")) {
    recordOperation(process, "DatabaseWrapper sharedInstance");
  }

  DatabaseWrapper* instance() {
    if (isWanted_ && process_.platform().clock.monotonicTime() >= nextTry_) open();
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
    constexpr Seconds timeBetweenTries{10};
    try {
      instance_ = std::make_unique<DatabaseWrapper>(
          process_, process_.platform().dataDirectory / "Kestro.sqlite");
      isWanted_ = false;
    } catch (const std::exception& failure) {
      isWanted_ = dynamic_cast<const UnknownSchema*>(&failure) == nullptr;
      nextTry_ = process_.platform().clock.monotonicTime() + timeBetweenTries;
      if (std::exchange(hasLoggedFailure_, true)) return;
      process_.platform().log.write(
          fmt::format("The database cannot be used, activities are not saved: {}", failure.what()));
      return;
    }
    process_.platform().notificationCenter.post(DatabaseWrapper::didOpenNotification);
  }

  Process& process_;
  bool isWanted_;  // and not there yet
  // By a clock that nobody sets: one set back would put it off.
  Seconds nextTry_ = Seconds::min();
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
    : process_(process), file_(file), lock_(std::make_unique<FileLock>(lockFileOf(file))) {
  const auto makeWriter = [&] {
    if (isPartPresent(process_, "activityWriter")) {
      activityWriter_ = std::make_unique<ActivityWriter>(process_, *this);
    }
  };
  try {
    openDatabase();
    makeWriter();
  } catch (const SQLite::Exception& failure) {
    if (!isDamage(failure)) throw;
    openAnew(true);
    makeWriter();
  }
  syncManager_ = std::make_unique<SyncManager>(process_, activityWriter_.get());
}

DatabaseWrapper::~DatabaseWrapper() = default;

bool DatabaseWrapper::isDamage(const SQLite::Exception& failure) {
  return failure.getErrorCode() == SQLITE_NOTADB || failure.getErrorCode() == SQLITE_CORRUPT;
}

bool DatabaseWrapper::mutateOrPresentError(const Mutation& mutation) {
  try {
    if (!isOpen() || !isInPlace()) openAnew(false);
    try {
      mutate(mutation);
    } catch (const SQLite::Exception& failure) {
      if (!isDamage(failure)) throw;
      openAnew(true);
      mutate(mutation);
    }
    hasPresentedError_ = false;
    return true;
  } catch (const SQLite::Exception& failure) {
    // The message itself could hold a user's text.
    presentError(failure.getErrorStr());
  } catch (const std::exception& failure) {
    presentError(failure.what());
  }
  return false;
}

void DatabaseWrapper::mutate(const Mutation& mutation) {
  SQLite::Transaction transaction(*database_, SQLite::TransactionBehavior::IMMEDIATE);
  mutation(*database_);
  transaction.commit();
}

void DatabaseWrapper::noteReadFailure(const SQLite::Exception& failure) {
  if (!isDamage(failure) || nextRepair_) return;
  // What has met the damage may still hold something of the database.
  nextRepair_ = process_.platform().runLoop.scheduleAfter(Seconds(0), [this] {
    const auto timer = std::move(nextRepair_);
    try {
      openAnew(true);
    } catch (const std::exception& error) {
      process_.platform().log.write(
          fmt::format("There can be no new database now: {}", error.what()));
    }
  });
}

// Once until a write works again: writes that wait are tried every few seconds. The user's own
// texts are no part of what the database says.
void DatabaseWrapper::presentError(std::string_view reason) {
  if (std::exchange(hasPresentedError_, true)) return;
  process_.platform().log.write(fmt::format("A time entry cannot be saved now: {}", reason));
  if (isClosing_) return;
  process_.platform().alerts.present(
      {localizedString(process_, "Your time entry could not be saved yet."),
       localizedFormat(process_, "Kestro tries again until it works. The database says: %@",
                       reason),
       {localizedString(process_, "OK")}},
      nullptr);
}

void DatabaseWrapper::mutateAsynchronouslyOrPresentError(Mutation mutation) {
  waitingMutations_.push_back(std::move(mutation));
  nextTry_ = process_.platform().runLoop.scheduleAfter(Seconds(0), [this] { finishMutations(); });
}

// Nobody is asked anything any more: an alert would hold up the end.
void DatabaseWrapper::close() {
  isClosing_ = true;
  finishMutations();
  if (activityWriter_) activityWriter_->close();
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

void DatabaseWrapper::openDatabase() {
  database_ = openedDatabase(process_, file_);
  identity_ = identityOf(file_);
}

bool DatabaseWrapper::isInPlace() const {
  return identity_ && identityOf(file_) == identity_;
}

void DatabaseWrapper::openAnew(bool isDamaged) {
  if (database_ && !isDamaged) {
    process_.platform().log.write(
        fs::exists(file_) ? "The database was replaced by another one, which is used from now on."
                          : "The database is gone. A new one is begun.");
  }
  if (activityWriter_) activityWriter_->releaseDatabase();
  nextBackupStep_.reset();
  backup_.reset();
  const bool wasInPlace = isInPlace();
  database_.reset();
  identity_.reset();
  if (!wasInPlace) {
    // The lock went with its folder.
    lock_.reset();
    makePrivateFolder(file_.parent_path());
    lock_ = std::make_unique<FileLock>(lockFileOf(file_));
  }
  if (isDamaged && fs::exists(file_)) moveAside(process_, file_);
  openDatabase();
}

}  // namespace kestro
