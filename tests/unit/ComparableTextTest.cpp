#include "foundation/ComparableText.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(ComparableText, isComposedAndWithoutWhatShowsNothing) {
  const struct {
    std::string_view text, expected;
  } cases[] = {
      {"Tide\ttables\n", "Tide\ttables\n"},
      {"\u200EMara\u200F \u2068Lind\u2069", "Mara Lind"},
      {"Cafe\u0301", "Café"},
      {"e\u200E\u0301", "é"},
      {"a\u0323\u0307", "ạ̇"},
      {"a\u0307\u0323", "ạ̇"},
      {"\u1112\u1161\u11AB", "한"},
      {"soft\u00ADhyphen, heart ❤\uFE0F", "softhyphen, heart ❤"},
      {"bell\x07 and\r return", "bell and return"},
      {"\u0600١", "\u0600١"},
      {"Ａ ﬁ ²", "Ａ ﬁ ²"},
      {"\u2068\u2069", ""},
      {"", ""},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(comparableText(text), comparableText(expected)) << text;
    EXPECT_EQ(comparableText(expected), expected);
  }
  EXPECT_EQ(caselessText("E\u0301te\u0301 \u200EÄRA"), "été ära");
  EXPECT_FALSE(isSameText("Cafe", "Café"));
  EXPECT_FALSE(isSameText("\xFF", ""));
}

TEST(ComparableText, aSuffixIsRemovedHoweverItIsWritten) {
  const struct {
    std::string_view text, suffix, expected;
  } cases[] = {
      {"Inbox • App", " • App", "Inbox"},
      {"Inbox \u2068• A\u200Epp\u2069", " • App", "Inbox"},
      {"\u2068Inbox\u2069 • App", " • \u200EApp", "\u2068Inbox\u2069"},
      {"Inbox • Cafe\u0301", " • Café", "Inbox"},
      {"Inbox • Café", " • Cafe\u0301", "Inbox"},
      {"Inbox • Cafe\u0301", " • Cafe", "Inbox • Cafe\u0301"},
      {"Inbox e\u0301", "\u0301", "Inbox e\u0301"},
      {"Inbox • App!", " • App", "Inbox • App!"},
      {"App", " • App", "App"},
      {"\xFF • App\u200E", " • App", "\xFF"},
      {" • App", " • App", ""},
      {"Inbox\u200E", "\u200F", "Inbox\u200E"},
  };
  for (const auto& [text, suffix, expected] : cases) {
    EXPECT_EQ(removingSameSuffix(text, suffix), expected) << text;
  }
}

}  // namespace
}  // namespace kestro
