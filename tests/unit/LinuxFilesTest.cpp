#include "linux/storage/LinuxFiles.h"

#include <gtest/gtest.h>

#include <fstream>

#include "FakePlatform.h"
#include "linux/storage/LinuxDirectories.h"
#include "linux/storage/PropertyListFile.h"

namespace kestro {
namespace {

TEST(LinuxFiles, dictionary) {
  const PropertyListDictionary texts{{"Private Browsing", "Privates Surfen"}};
  struct Case {
    std::string name, contents;
    std::optional<PropertyListDictionary> expected;
  };
  const Case cases[] = {
      {"xml", propertyListAsXml(texts), texts},
      {"strings", R"("Private Browsing" = "Privates Surfen";)", texts},
      {"words", "Private Browsing", std::nullopt},
      {"array", R"(<plist version="1.0"><array/></plist>)", std::nullopt},
      {"cut", propertyListAsXml(texts).substr(0, 120), std::nullopt},
  };
  const fakes::TemporaryDirectory directory;
  LinuxFiles files;
  for (const auto& [name, contents, expected] : cases) {
    const auto path = directory.path() / name;
    std::ofstream(path) << contents;
    EXPECT_EQ(files.dictionary(path), expected) << name;
  }
  EXPECT_EQ(files.dictionary(directory.path() / "missing"), std::nullopt);
  EXPECT_EQ(files.dictionary(directory.path()), std::nullopt);
}

TEST(LinuxFiles, copies) {
  const fakes::TemporaryDirectory directory;
  LinuxFiles files;
  const auto path = [&](const char* name) { return (directory.path() / name).string(); };
  std::ofstream(path("icon")) << "icns";
  EXPECT_EQ(files.makeDirectories(path("a/b")), std::nullopt);
  EXPECT_EQ(files.makeDirectories(path("a/b")), std::nullopt);
  EXPECT_EQ(files.copy(path("icon"), path("a/b/copy")), std::nullopt);
  EXPECT_TRUE(files.exists(path("a/b/copy")));
  struct Case {
    const char* from;
    const char* to;
    const char* reason;
  };
  const Case refused[] = {{"icon", "a/b/copy", "File exists"},
                          {"missing", "other", "No such file or directory"},
                          {"icon", "missing/copy", "No such file or directory"}};
  for (const auto& [from, to, reason] : refused)
    EXPECT_EQ(files.copy(path(from), path(to)), reason) << from << " to " << to;
  EXPECT_EQ(files.makeDirectories(path("icon/a")), "Not a directory");
  EXPECT_NE(files.copy(path("a"), path("other")), std::nullopt);
  EXPECT_FALSE(files.exists(path("other")));
}

TEST(LinuxFiles, documentsDirectory) {
  struct Case {
    const char* text;
    std::optional<std::filesystem::path> expected;
  };
  const Case cases[] = {
      {"# XDG_DOCUMENTS_DIR=\"$HOME/No\"\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n",
       "/home/kim/Dokumente"},
      {"XDG_DESKTOP_DIR=\"$HOME/Desk\"\n  XDG_DOCUMENTS_DIR=\"/srv/My \\\"files\\\"\"",
       "/srv/My \"files\""},
      {"XDG_DOCUMENTS_DIR=\"$HOME\"", "/home/kim"},
      {"XDG_DOCUMENTS_DIR=\"/first\"\nXDG_DOCUMENTS_DIR=\"/last\"\n", "/last"},
      {"XDG_DOCUMENTS_DIR=\"relative\"", std::nullopt},
      {"XDG_DOCUMENTS_DIR=/unquoted", std::nullopt},
      {"XDG_DOCUMENTS_DIR=\"/open", std::nullopt},
      {"XDG_DOCUMENTS_DIR=\"/open\\", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(documentsDirectoryIn(text, "/home/kim"), expected) << text;
}

}  // namespace
}  // namespace kestro
