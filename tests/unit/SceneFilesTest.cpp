// What a scripted desktop's file system refuses.
#include "scene/SceneFiles.h"

#include <gtest/gtest.h>

#include "FakePlatform.h"

namespace kestro {
namespace {

TEST(SceneFiles, copies) {
  SceneState state;
  state.files = {{"/a/icon", SceneText{"icns"}}, {"/b", SceneDirectory{}}};
  fakes::MemoryTranscript transcript;
  SceneFiles files(state, transcript);
  struct Case {
    const char* from;
    const char* to;
    std::optional<std::string> failure;
  };
  const Case cases[] = {
      {"/a/missing", "/b/copy", "No such file or directory"},
      {"/a", "/b/copy", "Is a directory"},
      {"/a/icon", "/c/copy", "No such file or directory"},
      {"/a/icon", "/a/icon/copy", "No such file or directory"},
      {"/a/icon", "/b/copy", std::nullopt},
      {"/a/icon", "/b/copy", "File exists"},
      {"/b/copy", "/a", "File exists"},
      {"/b/copy", "/a/other", std::nullopt},
  };
  for (const auto& [from, to, failure] : cases)
    EXPECT_EQ(files.copy(from, to), failure) << from << " to " << to;
  EXPECT_EQ(transcript.events.size(), 2U);
  EXPECT_EQ(files.makeDirectories("/a/icon/folder"), "Not a directory");
  EXPECT_EQ(files.makeDirectories("/a/new/folder"), std::nullopt);
  EXPECT_EQ(files.copy("/a/icon", "/a/new/copy"), std::nullopt);
}

}  // namespace
}  // namespace kestro
