#include "platform/linux/LinuxFiles.h"

#include <gtest/gtest.h>

#include <fstream>

#include "FakePlatform.h"
#include "platform/linux/PropertyListFile.h"

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

}  // namespace
}  // namespace kestro
