// The file of the database: versions, damage, whose it is, and what others do to it.
#include <sys/wait.h>
#include <unistd.h>

#include "DatabaseFixture.h"

namespace kestro {
namespace {

using DatabaseFileTest = DatabaseFixture;

constexpr std::string_view firstVersion = R"(
CREATE TABLE activities (id INTEGER PRIMARY KEY, start REAL NOT NULL,
  end REAL NOT NULL CHECK (end >= start), application_bundle_identifier TEXT,
  application_name TEXT, application_executable_url TEXT,
  application_process_identifier INTEGER NOT NULL, is_fullscreen INTEGER NOT NULL,
  is_showing_save_panel INTEGER NOT NULL, window_title TEXT, document_title TEXT,
  document_path TEXT, context_path TEXT, is_private_browsing INTEGER NOT NULL);
CREATE INDEX activities_by_start ON activities (start);
INSERT INTO activities VALUES (1, 1772441990, 1772441995, 'b', 'n', NULL, 1, 0, 0, 'old', NULL,
  NULL, NULL, 0);
PRAGMA user_version = 1;)";

TEST_F(DatabaseFileTest, bringsOlderVersionsUpToDate) {
  makeFile(firstVersion);
  write({0, "a"});
  writer().flush();
  EXPECT_EQ(rows(), "old -10--5, a 0-1");
  SQLite::Database database(file().string());
  EXPECT_EQ(database.execAndGet("PRAGMA user_version").getInt(), 4);
  EXPECT_EQ(database.execAndGet("SELECT sum(duration) FROM readable_activities").getInt(), 6);
}

TEST_F(DatabaseFileTest, leavesAnUnknownVersionAlone) {
  const auto bytes = [&] {
    std::ifstream stream(file(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  };
  makeFile("CREATE TABLE future (x)");
  for (const int version : {99, 5, 2147483647, -1, -5, -2147483647}) {
    makeFile(fmt::format("PRAGMA user_version = {}", version));
    const std::string before = bytes();
    restart();
    EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr) << version;
    EXPECT_TRUE(hasLogLine(fmt::format("version {};", version)));
    EXPECT_EQ(bytes(), before) << version;
  }
  makeFile("PRAGMA user_version = 0");
  fake.runLoop.setNow(at(10));
  EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr) << "until the next start";
}

TEST_F(DatabaseFileTest, movesADamagedFileAside) {
  for (const std::string_view copy : {"", "-2"}) {
    std::ofstream(file()) << "no database, but long enough to look at" << std::string(9000, '#');
    std::ofstream(file().string() + "-wal") << "a log of something else";
    restart();
    write({0, "a"});
    writer().flush();
    EXPECT_EQ(rows(), "a 0-1");
    const auto aside =
        fake.directory.path() / fmt::format("Kestro.damaged-20260302T090000Z{}.sqlite", copy);
    EXPECT_EQ(std::filesystem::file_size(aside), 9039U);
    EXPECT_EQ(std::filesystem::status(aside).permissions(), std::filesystem::perms(0600));
  }
  EXPECT_TRUE(hasLogLine("damaged"));
}

TEST_F(DatabaseFileTest, beginsAnewWhenDamageIsFoundWhileItRuns) {
  for (int time = 0; time < 2000; ++time) {
    write({static_cast<double>(time), time % 2 == 0 ? "a" : "b"});
  }
  writer().flush();
  damage();
  write({2000, "b"});
  write({2001, "c"});
  EXPECT_TRUE(writer().flush());
  EXPECT_EQ(rows(), "b 1999-2001, c 2001-2002");
  EXPECT_TRUE(hasLogLine("damaged"));
}

TEST_F(DatabaseFileTest, beginsAnewWhenATimeEntryMeetsDamage) {
  write({0, "a"});
  writer().flush();
  DatabaseWrapper& wrapper = *DatabaseWrapper::sharedInstance(*process);
  damage();
  EXPECT_EQ(OngoingTaskActivityManager(*process).runningTimer(), std::nullopt);
  fake.runLoop.advance(Seconds(1));
  EXPECT_TRUE(hasLogLine("damaged"));
  EXPECT_TRUE(wrapper.mutateOrPresentError([&](SQLite::Database& mutator) {
    TaskActivityDescriptor{at(0), at(60), "b"}.createTaskActivity(*process, mutator, true);
  }));
  write({1, "a"});
  writer().flush();
  EXPECT_EQ(rows(), "a 0-2") << "the open row is written as a whole";
}

// Whoever cleans up, moves or restores files does not know that the helper has one open.
TEST_F(DatabaseFileTest, goesOnWhenItsFileIsTakenAway) {
  const auto folder = fake.directory.path() / "data";
  fake.platform.dataDirectory = folder;
  namespace fs = std::filesystem;
  const struct {
    const char* name;
    std::function<void()> act;
    const char* logged;
  } cases[] = {
      {"deleted", [&] { fs::remove(folder / "Kestro.sqlite"); }, "database is gone"},
      {"the folder deleted", [&] { fs::remove_all(folder); }, "database is gone"},
      {"the folder moved", [&] { fs::rename(folder, fake.directory.path() / "elsewhere"); },
       "database is gone"},
      {"replaced",
       [&] {
         fs::copy_file(folder / "Kestro.sqlite", folder / "copy");
         fs::rename(folder / "copy", folder / "Kestro.sqlite");
       },
       "replaced by another one"},
  };
  for (const auto& [name, act, logged] : cases) {
    fs::remove_all(folder);
    fs::create_directory(folder);
    fs::permissions(folder, fs::perms::owner_all);
    restart();
    fake.log.lines.clear();
    write({0, "a"});
    write({1, "b"});
    writer().flush();
    act();
    write({2, "b"});
    write({3, "c"});
    EXPECT_TRUE(writer().flush()) << name;
    EXPECT_TRUE(hasLogLine(logged)) << name;
    SQLite::Database database((folder / "Kestro.sqlite").string());
    EXPECT_EQ(database
                  .execAndGet("SELECT group_concat(window_title || round(end - start), ' ') FROM "
                              "(SELECT * FROM activities WHERE window_title > 'a' ORDER BY start)")
                  .getString(),
              name == std::string_view("replaced") ? "b1.0 b1.0 c1.0" : "b2.0 c1.0")
        << name;
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all) << name;
  }
}

TEST_F(DatabaseFileTest, leavesAReadOnlyFileAlone) {
  makeFile("CREATE TABLE kept (x)");
  std::filesystem::permissions(file(), std::filesystem::perms(0444));
  EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr);
  EXPECT_TRUE(hasLogLine("the file is read-only"));
  EXPECT_EQ(std::filesystem::status(file()).permissions(), std::filesystem::perms(0444));
}

// As root, which may give files away; another user could make no such file.
TEST_F(DatabaseFileTest, usesAWritableFileOfAnotherOwner) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file to somebody else";
  constexpr uid_t nobody = 65534;
  makeFile("PRAGMA user_version = 0");
  std::filesystem::permissions(file(), std::filesystem::perms(0666));
  ASSERT_EQ(chown(fake.directory.path().c_str(), nobody, nobody), 0);
  const pid_t child = fork();
  if (child == 0) {
    if (setresuid(nobody, nobody, nobody) != 0) _exit(2);
    write({0, "a"});
    _exit(writer().flush() && hasLogLine("belongs to somebody else") ? 0 : 1);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(rows(), "a 0-1");
}

TEST_F(DatabaseFileTest, isReadableByItsOwnerAlone) {
  std::ofstream(file()).close();
  std::filesystem::permissions(file(), std::filesystem::perms(0666));
  write({0, "a"});
  writer().flush();
  for (const std::string_view name :
       {"Kestro.sqlite", "Kestro.sqlite-wal", "Kestro.sqlite-shm", "Kestro.lock"}) {
    const auto status = std::filesystem::status(fake.directory.path() / name);
    EXPECT_EQ(status.permissions(), std::filesystem::perms(0600)) << name;
  }
}

TEST_F(DatabaseFileTest, triesADatabaseAgainThatWasLockedAtTheStart) {
  makeFile("PRAGMA user_version = 0");
  {
    SQLite::Database other(file().string(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr);
  }
  EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr) << "not at every sample";
  int opened = 0;
  const auto observation = fake.platform.notificationCenter.observe(
      DatabaseWrapper::didOpenNotification, [&](const auto&) { ++opened; });
  fake.runLoop.setWallClock(at(-3600));
  EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr);
  fake.runLoop.advance(Seconds(10));
  EXPECT_NE(DatabaseWrapper::sharedInstance(*process), nullptr) << "whatever the wall's clock says";
  EXPECT_EQ(fake.log.lines.size(), 1U);
  EXPECT_EQ(opened, 1);
}

TEST_F(DatabaseFileTest, aSecondHelperWaitsForTheFirst) {
  write({0, "a"});
  writer().flush();
  Process second(fake.platform);
  EXPECT_EQ(DatabaseWrapper::sharedInstance(second), nullptr);
  EXPECT_TRUE(hasLogLine("another process"));
  EXPECT_EQ(rows(), "a 0-1") << "others may read";
  process.reset();
  fake.runLoop.setNow(at(10));
  EXPECT_NE(DatabaseWrapper::sharedInstance(second), nullptr);
  EXPECT_EQ(fake.log.lines.size(), 1U);
}

TEST_F(DatabaseFileTest, waitsForADirectoryThatIsThereLater) {
  fake.platform.dataDirectory = fake.directory.path() / "late";
  restart();
  EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr);
  std::filesystem::create_directory(fake.platform.dataDirectory);
  fake.runLoop.setNow(at(10));
  EXPECT_NE(DatabaseWrapper::sharedInstance(*process), nullptr);
}

}  // namespace
}  // namespace kestro
