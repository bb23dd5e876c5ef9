// How the extractors of work tools read the texts they find: the pure halves, a table each.
#include <gtest/gtest.h>

#include "extractors/GitHubDesktopInfoExtractor.h"
#include "extractors/StaticTexts.h"

namespace kestro {
namespace {

using Texts = std::vector<std::string>;

TEST(StaticTexts, lineOf) {
  struct Case {
    Texts pieces;
    const char* expected;
  };
  const Case cases[] = {
      {{"Tide tables"}, "Tide tables"}, {{"Fix ", "tide", " tables"}, "Fix tide tables"},
      {{"Fix", "tide"}, "Fix tide"},    {{" ", "Fix", " "}, "Fix"},
      {{" ", " "}, "absent"},           {{}, "absent"},
  };
  for (const auto& [pieces, expected] : cases) {
    EXPECT_EQ(lineOf(pieces).value_or("absent"), expected) << testing::PrintToString(pieces);
  }
}

TEST(GitHubDesktopTexts, name) {
  struct Case {
    Texts buttonTexts;
    const char* expected;
  };
  const Case cases[] = {
      {{"Current repository", "harbour-site"}, "harbour-site"},
      {{"Current Branch", "push-notices", "#42"}, "push-notices"},
      {{"Detached HEAD", "On 1a2b3c4"}, "On 1a2b3c4"},
      {{"Publisher"}, "Publisher"},
      {{"Fetch origin", "Last fetched 3 minutes ago"}, "absent"},
      {{"Fetching origin", "Hang on…"}, "absent"},
      {{"Force push origin", "Last fetched just now", "2"}, "absent"},
      {{"Publish branch", "Publish this branch"}, "absent"},
      {{}, "absent"},
  };
  for (const auto& [texts, expected] : cases) {
    EXPECT_EQ(gitHubDesktopName(texts).value_or("absent"), expected)
        << testing::PrintToString(texts);
  }
}

}  // namespace
}  // namespace kestro
