#include "product/embedded/AutomaticBackup.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/chrono.h>
#include <fmt/format.h>

#include <sqlite3.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "foundation/PrivateFiles.h"

namespace kestro {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostBackups = 5;
constexpr const char* namePrefix = "Kestro-";
constexpr const char* extension = ".sqlite";
constexpr const char* unfinishedExtension = ".unfinished";

constexpr int pagesAtOnce = 256;  // a megabyte: some two milliseconds
constexpr int mostBusySteps = 500;

fs::path targetIn(const fs::path& folder, Date now) {
  const auto time = fmt::gmtime(std::chrono::system_clock::to_time_t(now));
  return folder / fmt::format("{}{:%Y%m%dT%H%M%SZ}{}", namePrefix, time, extension);
}

// What killed helpers have left.
void removeUnfinished(const fs::path& folder) {
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    std::error_code ignored;
    if (entry.path().extension() == unfinishedExtension) fs::remove(entry.path(), ignored);
  }
}

fs::path emptyFile(const fs::path& folder, const fs::path& path) {
  makePrivateFolder(folder);
  closeFolder(folder);
  removeUnfinished(folder);
  fs::remove(path);
  createPrivateFile(path);
  return path;
}

void removeOldest(const fs::path& folder) {
  std::vector<fs::path> backups;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    const fs::path& path = entry.path();
    if (path.filename().string().starts_with(namePrefix) && path.extension() == extension) {
      backups.push_back(path);
    }
  }
  std::error_code ignored;
  std::ranges::sort(backups, std::greater());  // their names hold the time: the newest first
  for (std::size_t index = mostBackups; index < backups.size(); ++index)
    fs::remove(backups[index], ignored);
}

}  // namespace

AutomaticBackup::AutomaticBackup(SQLite::Database& database, fs::path folder, Date now)
    : folder_(std::move(folder)),
      target_(targetIn(folder_, now)),
      unfinished_(emptyFile(folder_, fs::path(target_).replace_extension(unfinishedExtension))),
      copy_(std::make_unique<SQLite::Database>(unfinished_.string(), SQLite::OPEN_READWRITE)),
      backup_(std::make_unique<SQLite::Backup>(*copy_, database)) {}

AutomaticBackup::~AutomaticBackup() {
  backup_.reset();
  copy_.reset();
  std::error_code ignored;
  fs::remove(unfinished_, ignored);
}

bool AutomaticBackup::copySome() {
  const int result = backup_->executeStep(pagesAtOnce);
  if (result == SQLITE_DONE) {
    finish();
    return true;
  }
  if (result != SQLITE_OK && ++busySteps_ > mostBusySteps) {
    throw std::runtime_error("the database is busy");
  }
  return false;
}

void AutomaticBackup::finish() {
  backup_.reset();
  copy_.reset();
  fs::rename(unfinished_, target_);
  removeOldest(folder_);
}

}  // namespace kestro
