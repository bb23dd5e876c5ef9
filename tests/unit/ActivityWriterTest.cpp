#include "product/ActivityWriter.h"

#include <random>

#include "DatabaseFixture.h"

namespace kestro {
namespace {

using ActivityWriterTest = DatabaseFixture;
using Sample = TitleSample;

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
