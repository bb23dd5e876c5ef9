#include "foundation/RegularExpression.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

std::string captures(std::string_view pattern, std::string_view text) {
  const auto match = RegularExpression(pattern).firstMatch(text);
  if (!match) return "no match";
  std::string joined;
  for (const auto& capture : match->captures) {
    joined += "<" + capture.value_or("absent") + ">";
  }
  return joined;
}

TEST(RegularExpression, captures) {
  const struct {
    std::string_view pattern, text, expected;
  } cases[] = {
      {R"(^(.+) \((.+)\)$)", "Weekly (Zoë)", "<Weekly (Zoë)><Weekly><Zoë>"},
      {R"((a)|(b))", "b", "<b><absent><b>"},
      {R"((/.+(\.prproj|\.aep)))", "P - /x/日本.prproj *",
       "</x/日本.prproj></x/日本.prproj><.prproj>"},
      {R"(^b)", "a\nb", "no match"},
      {R"(\s)", "a\u00A0b", "<\u00A0>"},
      {R"(^\d+$)", "٣٤", "<٣٤>"},
      {R"(^\w+$)", "é", "<é>"},
      {R"(edited)", "Edited", "no match"},
      {R"(^.b$)",
       "\xFF"
       "b",
       "<\uFFFD"
       "b>"},
      {R"(^.$)", "🎉", "<🎉>"},
      {R"(x*)", "", "<>"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(captures(row.pattern, row.text), row.expected) << row.pattern;
  }
}

TEST(RegularExpression, replacing) {
  const struct {
    std::string_view pattern, text, replacement, expected;
  } cases[] = {
      {R"(\*$)", "Report.docx**", "", "Report.docx*"},
      {R"(\s?[-–—]\s?Edited$)", "Budget  — Edited", "", "Budget "},
      {R"(\s?\(\d[^()]+\)$)", "Inbox (5)", "", "Inbox (5)"},
      {R"(^(!|\*|\^) (.*)$)", "! general", "$2", "general"},
      {"b", "abcb", "<$0>", "a<b>c<b>"},
      {"b", "abc", R"(\$1)", "a$1c"},
      {"b", "abc", "$7", "abc"},  // a template without that capture changes nothing
      {"x", "bad \xFF", "", "bad \xFF"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(RegularExpression(row.pattern).replacing(row.text, row.replacement), row.expected)
        << row.pattern;
  }
}

TEST(RegularExpression, hopelessSearchesCountAsNoMatch) {
  const RegularExpression slow("^(a+)+$");
  EXPECT_FALSE(slow.matches(std::string(40, 'a') + "b"));
  const RegularExpression deep("^(a|b)*c$");
  EXPECT_FALSE(deep.matches(std::string(2'000'000, 'a')));
  EXPECT_TRUE(slow.matches("aa"));  // still of use afterwards
}

TEST(RegularExpression, refusesWhatIsNoExpression) {
  EXPECT_FALSE(RegularExpression::compile("(a"));
  EXPECT_THROW(RegularExpression("[a"), std::invalid_argument);
  EXPECT_TRUE(RegularExpression::compile("[[a]]"));
}

}  // namespace
}  // namespace kestro
