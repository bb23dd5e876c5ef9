// Modes, whatever the process's mask of modes would make of them.
#include "foundation/PrivateFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "FakePlatform.h"
#include "platform/Process.h"
#include "product/SupportRequests.h"

namespace kestro {
namespace {

namespace fs = std::filesystem;

class PrivateFiles : public testing::Test {
 protected:
  PrivateFiles() : mask_(umask(0)) {}
  ~PrivateFiles() override { umask(mask_); }

  static unsigned modeOf(const fs::path& path) {
    return static_cast<unsigned>(fs::status(path).permissions());
  }

  mode_t mask_;
  fakes::FakePlatform fake_;
};

TEST_F(PrivateFiles, foldersAboveAreMadeForTheirOwnerAlone) {
  const auto top = fake_.directory.path() / "a";
  makePrivateFolder(top / "b" / "c");
  for (const auto& folder : {top, top / "b", top / "b" / "c"})
    EXPECT_EQ(modeOf(folder), 0700U) << folder;
}

TEST_F(PrivateFiles, closesOwnFoldersAndLeavesSharedOnes) {
  const struct {
    unsigned before;
    bool isClosed;
    unsigned after;
  } rows[] = {{0755, true, 0700}, {0777, true, 0700}, {0500, true, 0500}, {01777, false, 01777}};
  for (const auto& [before, isClosed, after] : rows) {
    const auto folder = fake_.directory.path() / std::to_string(before);
    makePrivateFolder(folder);
    fs::permissions(folder, fs::perms(before));
    makePrivateFolder(folder);
    EXPECT_EQ(modeOf(folder), before) << "as it was";
    EXPECT_EQ(closeFolder(folder), isClosed);
    EXPECT_EQ(modeOf(folder), after);
  }
}

TEST_F(PrivateFiles, supportRequestsAreTheirOwnersAlone) {
  Process process(fake_.platform);
  SupportRequests::createRequest(process, "body", {{"a title", "PMAssertions.txt"}});
  const auto parent = fake_.directory.path() / "Support Requests";
  EXPECT_EQ(modeOf(parent), 0700U);
  int files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(parent)) {
    EXPECT_EQ(modeOf(entry), entry.is_directory() ? 0700U : 0600U) << entry.path();
    files += entry.is_regular_file() ? 1 : 0;
  }
  EXPECT_EQ(files, 2);
}

}  // namespace
}  // namespace kestro
