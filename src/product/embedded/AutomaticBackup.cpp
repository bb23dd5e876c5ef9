#include "product/embedded/AutomaticBackup.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace kestro {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostBackups = 5;
constexpr const char* namePrefix = "Kestro-";
constexpr const char* extension = ".sqlite";

// Removes the unfinished copy unless it was moved to its place.
class UnfinishedCopy {
 public:
  explicit UnfinishedCopy(fs::path path) : path_(std::move(path)) { remove(); }
  ~UnfinishedCopy() { remove(); }
  UnfinishedCopy(const UnfinishedCopy&) = delete;
  UnfinishedCopy& operator=(const UnfinishedCopy&) = delete;
  const fs::path& path() const { return path_; }

 private:
  void remove() const {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
  fs::path path_;
};

void copyInto(const fs::path& file, SQLite::Database& database) {
  SQLite::Database copy(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  constexpr int allPages = -1;
  SQLite::Backup backup(copy, database);
  if (backup.executeStep(allPages); backup.getRemainingPageCount() != 0) {
    throw std::runtime_error("the database is busy");
  }
}

void removeOldest(const fs::path& folder) {
  std::vector<fs::path> backups;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    const fs::path& path = entry.path();
    if (path.filename().string().starts_with(namePrefix) && path.extension() == extension) {
      backups.push_back(path);
    }
  }
  std::ranges::sort(backups, std::greater());  // their names hold the time: the newest first
  for (std::size_t index = mostBackups; index < backups.size(); ++index)
    fs::remove(backups[index]);
}

}  // namespace

void backUpDatabase(SQLite::Database& database, const fs::path& folder, Date now) {
  fs::create_directories(folder);
  fs::permissions(folder, fs::perms::owner_all);
  const auto time = fmt::gmtime(std::chrono::system_clock::to_time_t(now));
  const fs::path target =
      folder / fmt::format("{}{:%Y%m%dT%H%M%SZ}{}", namePrefix, time, extension);
  const UnfinishedCopy copy(fs::path(target).replace_extension("unfinished"));
  copyInto(copy.path(), database);
  fs::rename(copy.path(), target);
  removeOldest(folder);
}

}  // namespace kestro
