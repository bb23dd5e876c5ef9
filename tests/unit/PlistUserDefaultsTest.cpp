#include "linux/storage/PlistUserDefaults.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "linux/storage/WholeFile.h"

namespace kestro {
namespace {

namespace fs = std::filesystem;

class CountingLog final : public SystemLog {
 public:
  void write(std::string_view) override { ++lines; }
  int lines = 0;
};

// A dictionary with lists in each other; `between` stands before each that is closed.
std::string nestedXml(int levels, const std::string& between) {
  std::string text = "<plist><dict><key>k</key>";
  for (int level = 0; level < levels; ++level)
    text += "<array>" + between;
  for (int level = 0; level < levels; ++level)
    text += "</array>";
  return text + "</dict></plist>";
}

std::string bigEndian(std::uint64_t number, int bytes) {
  std::string text;
  for (int byte = bytes - 1; byte >= 0; --byte)
    text += static_cast<char>(number >> (8U * static_cast<unsigned>(byte)));
  return text;
}

// A binary property list of these objects; the first is the top one.
std::string binaryList(const std::vector<std::string>& objects) {
  std::string text = "bplist00";
  std::string table;
  for (const std::string& object : objects) {
    table += bigEndian(text.size(), 4);
    text += object;
  }
  const std::size_t tablePlace = text.size();
  return text + table + std::string(6, '\0') + "\4\4" + bigEndian(objects.size(), 8) +
         bigEndian(0, 8) + bigEndian(tablePlace, 8);
}

// {"k": a list of the next list, so many times, and so on}.
std::string binaryLists(std::uint64_t levels, int times) {
  std::vector<std::string> objects{"\xd1" + bigEndian(1, 4) + bigEndian(2, 4), "\x51k"};
  for (std::uint64_t level = 0; level < levels; ++level) {
    std::string list(1, static_cast<char>(0xa0 + (level + 1 < levels ? times : 0)));
    for (int time = 0; level + 1 < levels && time < times; ++time)
      list += bigEndian(level + 3, 4);
    objects.push_back(list);
  }
  return binaryList(objects);
}

std::string binaryInItself() {
  return binaryList(
      {"\xd1" + bigEndian(1, 4) + bigEndian(2, 4), "\x51k", "\xa1" + bigEndian(2, 4)});
}

class PlistUserDefaultsTest : public testing::Test {
 protected:
  PlistUserDefaultsTest() {
    std::string pattern = (fs::temp_directory_path() / "defaults.XXXXXX").string();
    directory_ = fs::path(mkdtemp(pattern.data())) / "kestro";
  }
  ~PlistUserDefaultsTest() override { fs::remove_all(directory_.parent_path()); }

  fs::path file() const { return directory_ / "KestroHelper.plist"; }
  void write(std::string_view text) const { std::ofstream(file()) << text; }

  fs::path directory_;
  CountingLog log_;
};

PropertyListDictionary everyKind() {
  using std::chrono::seconds;
  return {{"yes", true},
          {"no", false},
          {"negative", -7},
          {"large", std::numeric_limits<std::int64_t>::max()},
          {"smallest", std::numeric_limits<std::int64_t>::min()},
          {"real", 0.1},
          {"whole real", 3.0},
          {"tiny", 1.5e-12},
          {"text", "<a> & \"b\" ä😀\n"},
          {"empty", ""},
          {"date", Date(seconds(1'772'442'000))},
          {"early date", Date(seconds(0))},
          {"data", Data{0, 1, 255}},
          {"list", PropertyListArray{1, "two", PropertyListArray{}}},
          {"nested", PropertyListDictionary{{"key", PropertyListDictionary{}}}}};
}

TEST_F(PlistUserDefaultsTest, KeepsEveryKindOfValueThroughAFile) {
  PlistUserDefaultsDatabase(directory_, log_).standard().set("all", everyKind());
  PlistUserDefaultsDatabase database(directory_, log_);
  const auto stored = database.standard().value("all");
  ASSERT_TRUE(stored && stored->get<PropertyListDictionary>());
  for (const auto& [key, expected] : everyKind()) {
    const auto* found = stored->get<PropertyListDictionary>()->find(key);
    EXPECT_TRUE(found && *found == expected) << key;
  }
  EXPECT_EQ(fs::status(directory_).permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(file()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(log_.lines, 0);
}

TEST_F(PlistUserDefaultsTest, SeesChangesFromOutside) {
  PlistUserDefaultsDatabase database(directory_, log_);
  PlistUserDefaultsDatabase other(directory_, log_);
  EXPECT_EQ(database.standard().integer("key"), std::nullopt);
  other.standard().set("key", 1);
  EXPECT_EQ(database.standard().integer("key"), 1);
  database.standard().set("mine", 2);
  other.standard().remove("key");
  EXPECT_EQ(database.standard().integer("key"), std::nullopt);
  EXPECT_EQ(other.standard().integer("mine"), 2);
  fs::remove(file());
  EXPECT_EQ(database.standard().integer("mine"), std::nullopt);
}

TEST_F(PlistUserDefaultsTest, KeepsAMalformedFileAside) {
  PlistUserDefaultsDatabase database(directory_, log_);
  int count = 0;
  for (const std::string& text :
       {std::string("not a list"), std::string("<plist><array/></plist>"),
        std::string("<plist><dict><key>a</key>"), std::string("bplist00\xff\xff\xff"),
        std::string(100, '\0'), nestedXml(103, ""), nestedXml(200'000, ""),
        nestedXml(200'000, "<!-- </array> --><![CDATA[</array>]]>"), binaryLists(200'000, 1),
        binaryLists(60, 2), binaryInItself()}) {
    log_.lines = 0;
    write(text);
    const std::string name = text.substr(0, 100);
    EXPECT_EQ(database.standard().value("key"), std::nullopt) << name;
    EXPECT_EQ(database.standard().value("other"), std::nullopt);
    EXPECT_EQ(log_.lines, 1) << name;
    EXPECT_FALSE(fs::exists(file())) << name;
    database.standard().set("key", 1);
    const std::string number = ++count == 1 ? "" : "." + std::to_string(count);
    EXPECT_TRUE(readWholeFile(file().string() + ".malformed" + number) == text) << name;
    EXPECT_EQ(database.standard().integer("key"), 1);
  }
  for (const std::string& text : {nestedXml(100, ""), binaryLists(100, 1), binaryLists(12, 2)}) {
    write(text);
    EXPECT_TRUE(database.standard().value("k")) << text.substr(0, 100);
  }
}

TEST_F(PlistUserDefaultsTest, LeavesAFileThatCannotBeReadAsItIs) {
  constexpr std::uintmax_t tooLarge = 17 << 20;
  PlistUserDefaultsDatabase database(directory_, log_);
  write("x");
  fs::resize_file(file(), tooLarge);
  EXPECT_EQ(database.standard().value("key"), std::nullopt);
  EXPECT_EQ(log_.lines, 1);
  database.standard().set("key", 1);
  EXPECT_EQ(database.standard().integer("key"), 1);  // in memory
  EXPECT_EQ(fs::file_size(file()), tooLarge);
  EXPECT_FALSE(fs::exists(file().string() + ".malformed"));
  fs::remove(file());
  database.standard().set("key", 2);
  EXPECT_EQ(PlistUserDefaultsDatabase(directory_, log_).standard().integer("key"), 2);
}

TEST_F(PlistUserDefaultsTest, RefusesNamesThatAreNoFileNames) {
  PlistUserDefaultsDatabase database(directory_, log_);
  for (const std::string& name :
       {std::string(), std::string(".."), std::string(".hidden"), std::string("a/b"),
        std::string("/etc/passwd"), std::string("a\nb"), std::string("a\0b", 3),
        std::string(300, 'x')}) {
    EXPECT_EQ(database.suite(name), nullptr) << name;
  }
  UserDefaults* suite = database.suite("org.example.App");
  ASSERT_NE(suite, nullptr);
  suite->set("voiceOverOnOffKey", true);
  EXPECT_EQ(database.suite("org.example.App"), suite);
  EXPECT_TRUE(fs::exists(directory_ / "suites" / "org.example.App.plist"));
}

}  // namespace
}  // namespace kestro
