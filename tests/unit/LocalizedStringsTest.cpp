#include "platform/LocalizedStrings.h"

#include <gtest/gtest.h>

#include <set>

#include "FakePlatform.h"
#include "platform/Process.h"
#include "platform/StringsText.h"
#include "platform/TextCase.h"

namespace kestro {
namespace {

TEST(StringsText, readsTables) {
  const PropertyListDictionary expected{{"a", "1"}, {"b \"c\"", "x\n\\ /* no comment */"}};
  EXPECT_EQ(dictionaryFromStringsText(
                R"(/* say "a" = "0"; */ "a"="1"; // "d" = "2";
                   "b \"c\"" = "x\n\\ /* no comment */" ; // end)"),
            expected);
  EXPECT_EQ(dictionaryFromStringsText(R"("a" = "0"; "a" = "1";)"),
            (PropertyListDictionary{{"a", "1"}}));
  EXPECT_EQ(dictionaryFromStringsText(""), PropertyListDictionary());
}

TEST(StringsText, refusesOtherTexts) {
  for (const char* text : {"a = b;", R"("a" = "b")", R"("a" "b";)", R"("a" = "b)", R"("a" = "b\)",
                           "/* open", R"("a" = "b"; x)", "<plist/>"}) {
    EXPECT_EQ(dictionaryFromStringsText(text), std::nullopt) << text;
  }
}

TEST(LocalizedStrings, everyTableHasTheSameKeys) {
  std::set<std::set<std::string>> keys;
  for (const LocalizedTable& table : localizedTables()) {
    const auto texts = dictionaryFromStringsText(table.text);
    ASSERT_TRUE(texts) << table.language;
    std::set<std::string> keysOfTable;
    for (const PropertyListMember& member : *texts) {
      keysOfTable.insert(member.key);
    }
    keys.insert(keysOfTable);
  }
  EXPECT_EQ(keys.size(), 1U);
}

std::string sender(const std::vector<std::string>& languages) {
  fakes::FakePlatform fake;
  fake.platform.preferredLanguages = languages;
  Process process(fake.platform);
  return localizedFormat(process, "From: %@", "%@ Kim");
}

TEST(LocalizedStrings, languageIsTheFirstWithATable) {
  EXPECT_EQ(sender({"de-AT", "en"}), "Von: %@ Kim");
  EXPECT_EQ(sender({"fr", "de_DE"}), "Von: %@ Kim");
  EXPECT_EQ(sender({"en-GB", "de"}), "From: %@ Kim");
  EXPECT_EQ(sender({"fr"}), "From: %@ Kim");
  EXPECT_EQ(sender({}), "From: %@ Kim");
}

TEST(LocalizedStrings, aMissingTextIsItsKey) {
  fakes::FakePlatform fake;
  Process process(fake.platform);
  EXPECT_EQ(localizedFormat(process, "Nothing", "x"), "Nothing");
}

TEST(TextCase, lowercased) {
  EXPECT_EQ(lowercased("In Einem PRIVATEN Fenster ÄÖ ПРИВАТ"),
            "in einem privaten fenster äö приват");
}

}  // namespace
}  // namespace kestro
