#include "product/ActivityWriter.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <random>

#include "FakePlatform.h"
#include "platform/Process.h"
#include "product/Activity.h"
#include "product/DatabaseWrapper.h"

namespace kestro {
namespace {

constexpr Date startOfTest{std::chrono::seconds(1'772'442'000)};

Date at(double seconds) {
  return startOfTest + std::chrono::round<Date::duration>(Seconds(seconds));
}

Activity activity(std::string_view title) {
  RunningApplication application;
  application.processIdentifier = 42;
  ActivityDetails details;
  details.windowTitle = title;
  return {application, details};
}

struct Sample {
  double time;
  std::string_view title;  // "-": nothing to track
};

class ActivityWriterTest : public testing::Test {
 protected:
  ActivityWriterTest() { fake.runLoop.setNow(startOfTest); }

  ActivityWriter& writer() { return *DatabaseWrapper::sharedInstance(*process)->activityWriter(); }
  void restart() {
    process.reset();
    process = std::make_unique<Process>(fake.platform);
  }
  std::filesystem::path file() const { return fake.directory.path() / "Kestro.sqlite"; }

  void write(const Sample& sample) {
    if (sample.title == "-") {
      writer().writeNoActivity(at(sample.time));
    } else {
      writer().write(at(sample.time), activity(sample.title));
    }
  }

  // What another process sees, as "title start-end" in seconds of the test.
  std::string rows() const {
    SQLite::Database database(file().string());
    SQLite::Statement query(database,
                            "SELECT window_title, start, end FROM activities ORDER BY start, end");
    const double start = Seconds(startOfTest.time_since_epoch()).count();
    std::string text;
    while (query.executeStep()) {
      text += fmt::format("{}{} {:.10g}-{:.10g}", text.empty() ? "" : ", ",
                          query.getColumn(0).getString(),
                          std::round((query.getColumn(1).getDouble() - start) * 1000) / 1000,
                          std::round((query.getColumn(2).getDouble() - start) * 1000) / 1000);
    }
    return text;
  }

  void makeFile(std::string_view schema) const {
    SQLite::Database(file().string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec(std::string(schema));
  }
  bool hasLogLine(std::string_view part) const {
    return std::ranges::any_of(fake.log.lines, [&](const std::string& line) {
      return line.find(part) != std::string::npos;
    });
  }

  fakes::FakePlatform fake;
  std::unique_ptr<Process> process = std::make_unique<Process>(fake.platform);
};

struct MergeCase {
  std::string_view name;
  std::vector<Sample> samples;
  std::string_view rows;
};

const std::vector<MergeCase>& mergeCases() {
  static const std::vector<MergeCase> cases{
      {"equal neighbours", {{0, "a"}, {1, "a"}, {2, "a"}}, "a 0-3"},
      {"a change", {{0, "a"}, {1, "a"}, {2, "b"}}, "a 0-2, b 2-3"},
      {"back again", {{0, "a"}, {1, "b"}, {2, "a"}}, "a 0-1, b 1-2, a 2-3"},
      {"an early change", {{0, "a"}, {0.4, "b"}}, "a 0-0.4, b 0.4-1.4"},
      {"a late change", {{0, "a"}, {3, "b"}}, "a 0-1, b 3-4"},
      {"a late equal sample", {{0, "a"}, {4, "a"}}, "a 0-5"},
      {"a pause", {{0, "a"}, {4.001, "a"}}, "a 0-1, a 4.001-5.001"},
      {"nothing to track", {{0, "a"}, {1, "-"}, {2, "a"}}, "a 0-1, a 2-3"},
      {"tracking ends early", {{0, "a"}, {0.25, "-"}}, "a 0-0.25"},
      {"changes at one time", {{0, "a"}, {0, "b"}}, "b 0-1"},
      {"back into free time", {{10, "a"}, {11, "a"}, {5, "a"}, {6, "a"}}, "a 5-7, a 10-12"},
      {"back, then up to the old row and beyond",
       {{10, "a"}, {11, "a"}, {8.5, "a"}, {9.5, "a"}, {10.5, "a"}, {11.5, "a"}, {12.5, "a"}},
       "a 8.5-10, a 10-12, a 12-13.5"},
      {"back into a row", {{0, "a"}, {1, "a"}, {0.5, "b"}, {1.5, "b"}}, "a 0-2, b 2-2.5"},
  };
  return cases;
}

TEST(ActivityMerging, sameRowsHoweverOftenTheyAreSaved) {
  class Fixture : public ActivityWriterTest {
   public:
    void TestBody() override {}
    std::string rowsOf(const MergeCase& merge, bool flushEachTime) {
      for (const Sample& sample : merge.samples) {
        write(sample);
        if (flushEachTime) {
          EXPECT_TRUE(writer().flush());
        }
      }
      EXPECT_TRUE(writer().flush());
      return rows();
    }
  };
  for (const MergeCase& merge : mergeCases()) {
    SCOPED_TRACE(merge.name);
    EXPECT_EQ(Fixture().rowsOf(merge, false), merge.rows);
    EXPECT_EQ(Fixture().rowsOf(merge, true), merge.rows);
  }
}

TEST_F(ActivityWriterTest, rowsNeverOverlapWhateverTheClockDoes) {
  std::mt19937 random(7);
  double time = 100;
  for (int count = 0; count < 3000; ++count) {
    time += random() % 20 == 0 ? static_cast<double>(random() % 120'000) / 1000 - 60 : 0.7;
    write({time, random() % 3 == 0 ? "a" : "b"});
    if (random() % 7 == 0) writer().flush();
    if (random() % 500 == 0) restart();
  }
  writer().flush();
  SQLite::Database database(file().string());
  EXPECT_EQ(
      database
          .execAndGet("SELECT count(*) FROM (SELECT start, lag(end) OVER (ORDER BY start, end)"
                      " AS previous FROM activities) WHERE previous > start")
          .getInt(),
      0);
  EXPECT_GT(database.execAndGet("SELECT count(*) FROM activities").getInt(), 100);
}

TEST_F(ActivityWriterTest, aNewProcessLifeGoesOnWhereTheLastEnded) {
  write({0, "a"});
  restart();
  write({0.5, "a"});
  write({1.5, "a"});
  writer().flush();
  EXPECT_EQ(rows(), "a 0-1, a 1-2.5");
}

TEST_F(ActivityWriterTest, savesWithinTenSecondsAndOnlyChanges) {
  write({0, "a"});
  fake.runLoop.advance(Seconds(9.9));
  EXPECT_EQ(rows(), "");
  fake.runLoop.advance(Seconds(0.2));
  EXPECT_EQ(rows(), "a 0-1");
  SQLite::Database other(file().string());
  const int version = other.execAndGet("PRAGMA data_version");
  fake.runLoop.advance(Seconds(60));
  writer().flush();
  EXPECT_EQ(other.execAndGet("PRAGMA data_version").getInt(), version);
  for (int time = 1; time <= 60; ++time) {
    write({static_cast<double>(time), "a"});
    fake.runLoop.advance(Seconds(1));
  }
  EXPECT_EQ(rows(), "a 0-61");
}

TEST_F(ActivityWriterTest, storesEveryField) {
  Activity full = activity("title\x01 \xFF");
  full.details.documentTitle = "document";
  full.details.documentPath = std::string(100'000, 'x');
  full.details.contextPath = {{"Server \"1\"", "カ\xFF"}};
  full.details.isPrivateBrowsing = true;
  full.isFullscreen = true;
  writer().write(at(0), full);
  ASSERT_TRUE(writer().flush());
  SQLite::Database database(file().string());
  EXPECT_EQ(
      database
          .execAndGet("SELECT json_extract(context_path, '$[0]') || json_extract(context_path,"
                      " '$[1]') || application_process_identifier || is_fullscreen ||"
                      " is_showing_save_panel || is_private_browsing || document_title ||"
                      " (application_name IS NULL) || (length(document_path) < 10000)"
                      " FROM activities")
          .getString(),
      "Server \"1\"カ\uFFFD42101document11");
}

// The first version as it was shipped.
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

TEST_F(ActivityWriterTest, bringsOlderVersionsUpToDate) {
  makeFile(firstVersion);
  write({0, "a"});
  writer().flush();
  EXPECT_EQ(rows(), "old -10--5, a 0-1");
  SQLite::Database database(file().string());
  EXPECT_EQ(database.execAndGet("PRAGMA user_version").getInt(), 4);
  EXPECT_EQ(database.execAndGet("SELECT sum(duration) FROM readable_activities").getInt(), 6);
}

TEST_F(ActivityWriterTest, leavesAnUnknownVersionAlone) {
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

TEST_F(ActivityWriterTest, timeEntriesWaitForABusyDatabase) {
  DatabaseWrapper& database = *DatabaseWrapper::sharedInstance(*process);
  const auto count = [&] {
    return SQLite::Database(file().string())
        .execAndGet("SELECT count(*) FROM time_entries")
        .getInt();
  };
  const auto add = [&] {
    database.mutateAsynchronouslyOrPresentError([&](SQLite::Database& mutator) {
      TaskActivityDescriptor{at(0), at(60), "a"}.createTaskActivity(*process, mutator, true);
    });
  };
  {
    SQLite::Database other(file().string(), SQLite::OPEN_READWRITE);
    SQLite::Transaction lock(other, SQLite::TransactionBehavior::EXCLUSIVE);
    add();
    fake.runLoop.advance(Seconds(1));
  }
  EXPECT_EQ(count(), 0);
  EXPECT_TRUE(hasLogLine("cannot be saved now"));
  fake.runLoop.advance(Seconds(10));
  EXPECT_EQ(count(), 1);
  add();
  database.finishMutations();
  EXPECT_EQ(count(), 2) << "before the end of the process";
}

TEST_F(ActivityWriterTest, movesADamagedFileAside) {
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

TEST_F(ActivityWriterTest, beginsAnewWhenDamageIsFoundWhileItRuns) {
  for (int time = 0; time < 2000; ++time) {
    write({static_cast<double>(time), time % 2 == 0 ? "a" : "b"});
  }
  writer().flush();
  SQLite::Database& database = DatabaseWrapper::sharedInstance(*process)->db();
  database.exec("PRAGMA wal_checkpoint(TRUNCATE)");
  std::fstream pages(file(), std::ios::in | std::ios::out | std::ios::binary);
  pages.seekp(4096) << std::string(std::filesystem::file_size(file()) - 4096, '#') << std::flush;
  database.exec("PRAGMA shrink_memory");  // so that it reads the file again
  write({2000, "b"});
  write({2001, "c"});
  EXPECT_TRUE(writer().flush());
  EXPECT_EQ(rows(), "b 1999-2001, c 2001-2002");
  EXPECT_TRUE(hasLogLine("damaged"));
}

TEST_F(ActivityWriterTest, beginsAnewWhenATimeEntryMeetsDamage) {
  write({0, "a"});
  writer().flush();
  DatabaseWrapper& wrapper = *DatabaseWrapper::sharedInstance(*process);
  wrapper.db().exec("PRAGMA wal_checkpoint(TRUNCATE)");
  std::fstream pages(file(), std::ios::in | std::ios::out | std::ios::binary);
  pages.seekp(4096) << std::string(std::filesystem::file_size(file()) - 4096, '#') << std::flush;
  wrapper.db().exec("PRAGMA shrink_memory");
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
TEST_F(ActivityWriterTest, goesOnWhenItsFileIsTakenAway) {
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

TEST_F(ActivityWriterTest, writesAGrowingRowAnewThatSomebodyHasDeleted) {
  write({0, "a"});
  writer().flush();
  SQLite::Database(file().string(), SQLite::OPEN_READWRITE).exec("DELETE FROM activities");
  write({1, "a"});
  writer().flush();
  write({2, "a"});
  writer().flush();
  EXPECT_EQ(rows(), "a 0-3");
}

TEST_F(ActivityWriterTest, countsWhatIsLostAtTheEnd) {
  write({0, "a"});
  writer().flush();
  SQLite::Database other(file().string(), SQLite::OPEN_READWRITE);
  other.exec("BEGIN IMMEDIATE");
  write({1, "a"});
  write({2, "b"});
  write({3, "c"});
  DatabaseWrapper::clearSharedInstance(*process);
  EXPECT_TRUE(hasLogLine("3 activities could not be saved."));
}

TEST_F(ActivityWriterTest, leavesAReadOnlyFileAlone) {
  makeFile("CREATE TABLE kept (x)");
  std::filesystem::permissions(file(), std::filesystem::perms(0444));
  EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr);
  EXPECT_TRUE(hasLogLine("the file is read-only"));
  EXPECT_EQ(std::filesystem::status(file()).permissions(), std::filesystem::perms(0444));
}

// As root, which may give files away; another user could make no such file.
TEST_F(ActivityWriterTest, usesAWritableFileOfAnotherOwner) {
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

TEST_F(ActivityWriterTest, isReadableByItsOwnerAlone) {
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

TEST_F(ActivityWriterTest, keepsWhatALockedDatabaseRefuses) {
  write({0, "a"});
  writer().flush();
  SQLite::Database other(file().string(), SQLite::OPEN_READWRITE);
  other.exec("BEGIN IMMEDIATE");
  write({1, "a"});
  write({2, "b"});
  EXPECT_FALSE(writer().flush());
  write({3, "c"});
  EXPECT_FALSE(writer().flush());
  EXPECT_EQ(fake.log.lines.size(), 1U);
  other.exec("ROLLBACK");
  fake.runLoop.advance(Seconds(10));
  EXPECT_EQ(rows(), "a 0-2, b 2-3, c 3-4");
}

TEST_F(ActivityWriterTest, waitsForALockOnceInTenSeconds) {
  write({100, "a"});
  writer().flush();
  SQLite::Database other(file().string(), SQLite::OPEN_READWRITE);
  other.exec("BEGIN IMMEDIATE");
  write({101, "a"});
  EXPECT_FALSE(writer().flush());
  const auto start = std::chrono::steady_clock::now();
  for (int time = 0; time < 20; ++time) {
    write({static_cast<double>(time), "b"});
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2)) << "of 5";
  other.exec("ROLLBACK");
  fake.runLoop.advance(Seconds(10));
  write({20, "b"});
  writer().flush();
  EXPECT_EQ(rows(), "b 20-21, a 100-102");
}

TEST_F(ActivityWriterTest, triesADatabaseAgainThatWasLockedAtTheStart) {
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

TEST_F(ActivityWriterTest, aSecondHelperWaitsForTheFirst) {
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

TEST_F(ActivityWriterTest, waitsForADirectoryThatIsThereLater) {
  fake.platform.dataDirectory = fake.directory.path() / "late";
  restart();
  EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr);
  std::filesystem::create_directory(fake.platform.dataDirectory);
  fake.runLoop.setNow(at(10));
  EXPECT_NE(DatabaseWrapper::sharedInstance(*process), nullptr);
}

TEST_F(ActivityWriterTest, aFullDiskCostsTheOldestRowsAtMost) {
  SQLite::Database& database = DatabaseWrapper::sharedInstance(*process)->db();
  write({0, "a"});
  writer().flush();
  database.exec("PRAGMA max_page_count = 1");  // raised to the pages in use
  for (int time = 1; time <= 6000; ++time) {
    write({static_cast<double>(time), time % 2 == 0 ? "a" : "b"});
  }
  EXPECT_FALSE(writer().flush());
  database.exec("PRAGMA max_page_count = 1000000");
  EXPECT_TRUE(writer().flush());
  EXPECT_EQ(database.execAndGet("SELECT count(*) FROM activities").getInt(), 5001);
  EXPECT_EQ(database.execAndGet("SELECT max(end) - 1772442000 FROM activities").getInt(), 6001);
  EXPECT_TRUE(hasLogLine("1000 were too many"));
}

TEST_F(ActivityWriterTest, goesWithoutDatabaseOrWriter) {
  fake.productConditions.set("database", false);
  EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr);
  EXPECT_FALSE(std::filesystem::exists(file()));
  fake.productConditions = {{"activityWriter", false}};
  restart();
  EXPECT_EQ(DatabaseWrapper::sharedInstance(*process)->activityWriter(), nullptr);
  fake.productConditions = {};
  fake.platform.dataDirectory = "/nowhere/at/all";
  restart();
  EXPECT_EQ(DatabaseWrapper::sharedInstance(*process), nullptr);
  EXPECT_TRUE(hasLogLine("cannot be used"));
}

}  // namespace
}  // namespace kestro
