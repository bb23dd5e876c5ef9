// What the start asks of the platform and no transcript shows.
#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include "FakePlatform.h"
#include "app/KSHelperAppDelegate.h"
#include "product/ActivityWriter.h"
#include "product/DatabaseWrapper.h"

namespace kestro {
namespace {

TEST(StartUpTest, watchesTheDirectoryOfTheExecutable) {
  fakes::FakePlatform fake;
  fake.platform.mainBundle.executablePath = "/Apps/Helper.app/Contents/MacOS/Helper";
  Process process{fake.platform};
  KSHelperAppDelegate delegate(process);
  EXPECT_EQ(delegate.awakeFromNib([] {}), std::nullopt);
  EXPECT_EQ(fake.fileEvents.watched, std::vector<std::string>{"/Apps/Helper.app/Contents/MacOS"});
}

TEST(StartUpTest, aDatabaseThatOpensLaterIsSetUpThen) {
  fakes::FakePlatform fake;
  Process process{fake.platform};
  const auto file = fake.directory.path() / "Kestro.sqlite";
  {
    SQLite::Database other(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    other.exec("BEGIN EXCLUSIVE");
    KSHelperAppDelegate delegate(process);
    EXPECT_EQ(delegate.awakeFromNib([] {}), std::nullopt);
    delegate.applicationDidFinishLaunching();
    ASSERT_EQ(DatabaseWrapper::openSharedInstance(process), nullptr);
    other.exec("ROLLBACK");
    fake.runLoop.advance(Seconds(12));
    DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process);
    ASSERT_NE(database, nullptr);
    EXPECT_NE(database->activityWriter()->postSyncUpdater(), nullptr);
  }
}

}  // namespace
}  // namespace kestro
