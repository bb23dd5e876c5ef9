// What the start asks of the platform and no transcript shows.
#include <gtest/gtest.h>

#include "FakePlatform.h"
#include "app/KSHelperAppDelegate.h"

namespace kestro {
namespace {

TEST(StartUpTest, watchesTheDirectoryOfTheExecutable) {
  fakes::FakePlatform fake;
  fake.platform.mainBundle.executablePath = "/Apps/Helper.app/Contents/MacOS/Helper";
  Process process{fake.platform};
  KSHelperAppDelegate delegate(process);
  EXPECT_EQ(delegate.awakeFromNib(), std::nullopt);
  EXPECT_EQ(fake.fileEvents.watched, std::vector<std::string>{"/Apps/Helper.app/Contents/MacOS"});
}

}  // namespace
}  // namespace kestro
