#include "platform/LocalizedStrings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>

#include "FakePlatform.h"
#include "foundation/RegularExpression.h"
#include "foundation/StringsText.h"
#include "foundation/TextCase.h"
#include "platform/Process.h"

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

using Keys = std::set<std::string>;

const std::filesystem::path sourceDirectory = KESTRO_SOURCE_DIRECTORY;

std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The value of adjacent C++ string literals. Simple escapes only; any other one stays and so is
// found in no table.
std::string valueOfLiterals(const std::string& literals) {
  std::string value;
  bool isInside = false;
  for (std::size_t index = 0; index < literals.size(); ++index) {
    const char character = literals[index];
    if (character == '"') {
      isInside = !isInside;
    } else if (isInside && character == '\\' && index + 1 < literals.size()) {
      const char escaped = literals[++index];
      const auto known = std::string_view("n\"\\'t").find(escaped);
      value += known == std::string_view::npos ? std::string{'\\', escaped}
                                               : std::string(1, "\n\"\\'\t"[known]);
    } else if (isInside) {
      value += character;
    }
  }
  return value;
}

// The literal keys of calls and marks; keys in comments are none.
Keys keysInSource(std::string source) {
  static const RegularExpression comment(R"((?m)^\s*//.*$)");
  static const RegularExpression use(
      R"((?s)\b(?:localizable\(|localized(?:String|Format)\(\s*[A-Za-z_][\w.>()-]*\s*,))"
      R"(\s*((?:"(?:[^"\\]|\\.)*+"\s*+)++)(.*))");
  source = comment.replacing(source, "");
  Keys keys;
  for (auto match = use.firstMatch(source); match; match = use.firstMatch(source)) {
    keys.insert(valueOfLiterals(match->captures.at(1).value_or("")));
    source = match->captures.at(2).value_or("");
  }
  return keys;
}

void addTitles(const nlohmann::json& rows, Keys& keys) {
  for (const auto& row : rows) {
    const std::string title = row.value("title", "");
    if (!title.empty() && !row.value("placeholder", false)) keys.insert(title);
    if (row.contains("rows")) addTitles(row.at("rows"), keys);
  }
}

Keys keysInUse() {
  Keys keys;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(sourceDirectory / "src")) {
    const auto extension = entry.path().extension();
    if (extension == ".cpp" || extension == ".h") keys.merge(keysInSource(contentsOf(entry)));
  }
  const auto menu = contentsOf(sourceDirectory / "resources/MainMenu.json");
  addTitles(nlohmann::json::parse(menu, nullptr, true, true), keys);
  return keys;
}

// "\n" for a line feed, so that a difference stays on its line.
std::string withoutIn(const Keys& keys, const Keys& others) {
  std::string text;
  for (const std::string& key : keys) {
    if (!others.contains(key)) text += nlohmann::json(key).dump() + '\n';
  }
  return text;
}

TEST(LocalizedStrings, everyTableHasTheKeysInUseAndNoOthers) {
  const Keys used = keysInUse();
  Keys languages;
  for (const LocalizedTable& table : localizedTables()) {
    languages.emplace(table.language);
    const auto texts = dictionaryFromStringsText(table.text);
    ASSERT_TRUE(texts) << table.language;
    Keys keysOfTable;
    for (const PropertyListMember& member : *texts) {
      keysOfTable.insert(member.key);
    }
    EXPECT_EQ(withoutIn(used, keysOfTable), "") << "missing in the table " << table.language;
    EXPECT_EQ(withoutIn(keysOfTable, used), "") << "used nowhere, table " << table.language;
  }
  EXPECT_EQ(languages, (Keys{"de", "en"}));
}

TEST(LocalizedStrings, keysAreFoundHoweverTheyStandInTheSource) {
  EXPECT_EQ(keysInSource(R"(a(localizedString(process, "One")); localizedFormat(
      self->process(),
      "Two\n\"%@\" "
      "and “three”", {x, "no key"}); // localizedString(process, "trailing")
      // localizedString(process, "comment")
      localizable("Don't");localizedString(process_, key); f("other"))"),
            (Keys{"One", "Two\n\"%@\" and “three”", "Don't", "trailing"}));
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
