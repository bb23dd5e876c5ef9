// The embedded product's part of the shell, where scenes cannot look: days, durations, files and
// the database itself.
#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "FakePlatform.h"
#include "foundation/Iso8601.h"
#include "platform/Process.h"
#include "product/KestroDatabase.h"
#include "product/KestroIntegrations.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

TEST(HelperHelperTest, tomorrowBeginsAtTheUsersMidnight) {
  struct Row {
    std::string_view zone;
    std::string_view now;
    int minutes;
  };
  constexpr Row rows[] = {
      {"UTC", "2026-03-02T09:00:00Z", 15 * 60},
      {"UTC", "2026-03-02T00:00:00Z", 24 * 60},
      {"Europe/Berlin", "2026-03-02T22:59:00Z", 1},
      {"Europe/Berlin", "2026-03-28T23:30:00Z", 22 * 60 + 30},  // a day of 23 hours
      {"Europe/Berlin", "2026-10-24T22:30:00Z", 24 * 60 + 30},  // a day of 25 hours
      {"Pacific/Auckland", "2026-06-01T11:59:00Z", 1},
      {"America/St_Johns", "2026-01-15T03:00:00Z", 30},
  };
  for (const Row& row : rows) {
    fakes::FakePlatform fake;
    fake.platform.timeZone = *TimeZone::named(row.zone);
    fake.runLoop.setNow(*parseIso8601(row.now));
    Process process{fake.platform};
    EXPECT_EQ(HelperHelper::sharedInstance(process).secondsUntilTomorrow(),
              Seconds(row.minutes * 60))
        << row.zone << " " << row.now;
  }
}

TEST(DurationFormatterBridgeTest, writesTheLargestUnits) {
  fakes::FakePlatform fake;
  Process process{fake.platform};
  struct Row {
    double seconds;
    int components;
    bool alwaysMinutes;
    std::string_view text;
  };
  constexpr Row rows[] = {
      {0, 2, false, "0s"},
      {0, 2, true, "0m"},
      {-5, 2, false, "0s"},
      {59.9, 2, false, "59s"},
      {60, 2, false, "1m"},
      {90, 2, false, "1m"},
      {3600, 2, false, "1h"},
      {3600, 2, true, "1h 0m"},
      {3660, 2, false, "1h 1m"},
      {3660, 1, false, "1h"},
      {90000, 2, false, "25h"},
      {3660, 0, false, "1h"},
      {1e300, 2, false, "277777777h 46m"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(DurationFormatterBridge::shortString(process, Seconds(row.seconds), row.components,
                                                   row.alwaysMinutes),
              row.text)
        << row.seconds;
  }
}

class ProductDatabaseTest : public testing::Test {
 protected:
  DatabaseWrapper& database() { return *DatabaseWrapper::sharedInstance(process); }
  int count(const std::string& table) {
    return database().db().execAndGet("SELECT count(*) FROM " + table).getInt();
  }
  std::string backups() const {
    std::vector<std::string> names;
    for (const auto& entry :
         std::filesystem::directory_iterator(fake.directory.path() / "Backups")) {
      names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return fmt::format("{}", fmt::join(names, " "));
  }

  fakes::FakePlatform fake;
  Process process{fake.platform};
};

TEST_F(ProductDatabaseTest, keepsTheNewestFiveBackupsAndNothingUnfinished) {
  fake.runLoop.setNow(*parseIso8601("2026-03-02T09:00:00Z"));
  OngoingTaskActivityManager(process).startTaskActivity({fake.runLoop.now(), "Offer", "Museum"});
  fake.runLoop.advance(Seconds(1));
  const auto folder = fake.directory.path() / "Backups";
  std::filesystem::create_directory(folder);
  std::ofstream(folder / "Kestro-20260227T090001Z.unfinished") << "left by a crash";
  std::ofstream(folder / "notes.sqlite") << "the user's own";
  for (int day = 0; day < 7; ++day) {
    database().createAutomaticBackup();
    fake.runLoop.advance(Seconds(86400));
  }
  EXPECT_EQ(backups(),
            "Kestro-20260304T090001Z.sqlite Kestro-20260305T090001Z.sqlite "
            "Kestro-20260306T090001Z.sqlite Kestro-20260307T090001Z.sqlite "
            "Kestro-20260308T090001Z.sqlite notes.sqlite");
  const auto newest = folder / "Kestro-20260308T090001Z.sqlite";
  SQLite::Database copy(newest.string());
  EXPECT_EQ(copy.execAndGet("SELECT title FROM running_timer").getString(), "Offer");
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(newest).permissions(), perms::owner_read | perms::owner_write);
}

TEST_F(ProductDatabaseTest, aBackupThatCannotBeMadeIsOneLogLine) {
  std::ofstream(fake.directory.path() / "Backups") << "in the way";
  database().createAutomaticBackup();
  ASSERT_EQ(fake.log.lines.size(), 1U);
  EXPECT_TRUE(fake.log.lines[0].starts_with("The database could not be backed up: "));
}

TEST_F(ProductDatabaseTest, integrationsSurviveADamagedDatabase) {
  fake.productConditions.set("activityWriter", false);
  const KestroIntegrationsDatabaseAdapter adapter(process, database());
  EXPECT_FALSE(adapter.markUpdated(std::nullopt));
  database().openAnew(true);
  database().db().exec("INSERT INTO integrations (name) VALUES ('Tickets')");
  EXPECT_TRUE(adapter.markUpdated(std::nullopt));
  EXPECT_TRUE(adapter.markUpdated(std::vector<std::string>{"Tickets", "Other"}));
  EXPECT_FALSE(adapter.markUpdated(std::vector<std::string>{"Other"}));
}

TEST_F(ProductDatabaseTest, sampleDataIsForEmptyDatabasesThatWantIt) {
  SampleDataSources sources = SampleDataGenerator::defaultSampleDataSources();
  sources.push_back(std::make_unique<IntegrationsSampleDataSource>(
      PropertyListDictionary{{"names", PropertyListArray{"Tickets", 7, "Tickets"}}}));
  database().generateSampleDataIfNeeded(sources);
  EXPECT_EQ(count("time_entries"), 0);
  fake.defaults.product(ProductStore::mainAppPreferences)
      .set("sampleDataGenerator", PropertyListDictionary());
  database().generateSampleDataIfNeeded(sources);
  EXPECT_EQ(count("time_entries"), 9);
  EXPECT_EQ(count("integrations"), 1);
  database().generateSampleDataIfNeeded(sources);
  EXPECT_EQ(count("time_entries"), 9);
}

TEST_F(ProductDatabaseTest, aNewTimerEndsTheOneThatRuns) {
  const OngoingTaskActivityManager manager(process);
  EXPECT_FALSE(manager.hasRunningActivity());
  manager.startTaskActivity({fake.runLoop.now(), "a", std::nullopt});
  fake.runLoop.advance(Seconds(100));
  manager.startTaskActivity({fake.runLoop.now(), "b", "Museum"});
  fake.runLoop.advance(Seconds(50));
  manager.stopRunningActivity(false, false);
  manager.stopRunningActivity(false, false);
  fake.runLoop.advance(Seconds(1));
  EXPECT_FALSE(manager.hasRunningActivity());
  EXPECT_EQ(database()
                .db()
                .execAndGet("SELECT group_concat(title || ' ' || CAST(duration AS INTEGER) || "
                            "coalesce(' ' || project, '')) FROM readable_time_entries")
                .getString(),
            "a 100,b 50 Museum");
}

TEST_F(ProductDatabaseTest, withoutADatabaseTheTimerIsThatOfTheConditions) {
  fake.productConditions.set("database", false);
  const OngoingTaskActivityManager manager(process);
  manager.startTaskActivity({fake.runLoop.now(), "a", std::nullopt});
  manager.editRunningOrLatestTask();
  EXPECT_FALSE(manager.hasRunningActivity());
  fake.productConditions.set("runningTimer", true);
  EXPECT_TRUE(manager.hasRunningActivity());
  manager.stopRunningActivity(true, false);
  EXPECT_FALSE(manager.hasRunningActivity());
  fake.productConditions.set("runningTimer", PropertyListDictionary{{"title", "b"}});
  EXPECT_EQ(manager.runningTimer()->title, "b");
}

TEST_F(ProductDatabaseTest, aShutdownAnnouncesOnlyAFlushThatTakesTime) {
  int announced = 0;
  const auto observation = fake.notificationCenter.observe(
      ActivityWriter::flushAndSyncFinishedNotification, [&](const auto&) { ++announced; });
  auto& logger = process.shared<InfoLogger>();
  EXPECT_FALSE(logger.prepareForShutdown(false));
  fake.productConditions.set("shutdownFlush", "never");
  EXPECT_TRUE(logger.prepareForShutdown(false));
  fake.runLoop.advance(Seconds(100));
  EXPECT_EQ(announced, 0);
  fake.productConditions.set("shutdownFlush", 2.5);
  EXPECT_TRUE(logger.prepareForShutdown(false));
  fake.runLoop.advance(Seconds(2));
  EXPECT_EQ(announced, 0);
  fake.runLoop.advance(Seconds(1));
  EXPECT_EQ(announced, 1);
}

TEST_F(ProductDatabaseTest, clearedThereIsNoDatabaseUntilTheNextLife) {
  OngoingTaskActivityManager(process).startTaskActivity({fake.runLoop.now(), "a", std::nullopt});
  DatabaseWrapper::clearSharedInstance(process);
  EXPECT_EQ(DatabaseWrapper::sharedInstance(process), nullptr);
  Process next{fake.platform};
  EXPECT_EQ(OngoingTaskActivityManager(next).runningTimer()->title, "a");
}

}  // namespace
}  // namespace kestro
