#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "foundation/CompoundText.h"
#include "foundation/Utf8.h"
#include "linux/applications/ApplicationIdentity.h"
#include "linux/process/BackOff.h"
#include "linux/process/PreferredLanguages.h"
#include "linux/process/StandardErrorLog.h"
#include "linux/windows/ScreenCoordinates.h"

namespace kestro {
namespace {

namespace fs = std::filesystem;

class ApplicationsDirectory {
 public:
  ApplicationsDirectory() {
    std::string pattern = (fs::temp_directory_path() / "applications.XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~ApplicationsDirectory() { fs::remove_all(path_); }
  ApplicationsDirectory(const ApplicationsDirectory&) = delete;
  ApplicationsDirectory& operator=(const ApplicationsDirectory&) = delete;

  void write(const fs::path& name, const std::string& lines) {
    fs::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name) << "[Desktop Entry]\nType=Application\n" << lines;
  }
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

TEST(DesktopEntries, RulesInTheirOrder) {
  ApplicationsDirectory directory;
  directory.write("org.example.Editor.desktop", "Name=Editor\nExec=editor-bin %U\n");
  directory.write("browser.desktop", "Name=Browser\nExec=/usr/bin/browse\nStartupWMClass=Web\n");
  directory.write("kde/mail.desktop", "Name=Mail\nExec=env A=b \"/opt/Mail App/mail\" --x\n");
  directory.write("script.desktop", "Name=Script\nExec=python3 script.py\n");
  directory.write("broken.desktop", "Exec=no name, still an application\n");
  std::ofstream(directory.path() / "link.desktop") << "[Desktop Entry]\nType=Link\nName=Link\n";
  DesktopEntries entries({"/nonexistent", directory.path()}, {"en"});
  struct Case {
    ApplicationTraits traits;  // GTK identifier, instance, class, executable
    const char* expected;
  };
  const Case cases[]{
      {{"org.example.Editor", "x", "Web", ""}, "org.example.Editor"},
      {{"org.unknown", "x", "Web", ""}, "browser"},
      {{"", "Web", "x", ""}, "browser"},
      {{"", "Browser", "Browser", ""}, "browser"},
      {{"", "editor", "Editor", ""}, "org.example.Editor"},
      {{"", "", "", "/usr/lib/editor-bin"}, "org.example.Editor"},
      {{"", "", "", "/opt/Mail App/mail"}, "kde-mail"},
      {{"", "", "", "/usr/bin/python3"}, "-"},
      {{"", "", "Link", ""}, "-"},
      {{"", "", "", ""}, "-"},
  };
  for (const Case& each : cases) {
    const DesktopEntry* found = findDesktopEntry(entries.all(), each.traits);
    EXPECT_EQ(found ? found->identifier : "-", each.expected) << each.traits.className;
  }
}

TEST(DesktopEntries, NamesInTheUsersLanguage) {
  const std::string text =
      "# comment\n[Desktop Entry]\r\nType=Application\nName=Files\nName[de]=Dateien\n"
      "Name[de_CH]=Dateie\nExec=f\n[Desktop Action new]\nName=New window\n";
  struct Case {
    std::vector<std::string> languages;
    const char* expected;
  };
  const Case cases[]{{{"de-AT", "en"}, "Dateien"},
                     {{"de-CH"}, "Dateie"},
                     {{"en-GB", "de"}, "Files"},
                     {{"fr", "de"}, "Dateien"},
                     {{}, "Files"}};
  for (const Case& each : cases) {
    EXPECT_EQ(parseDesktopEntry(text, each.languages)->name, each.expected);
  }
  EXPECT_FALSE(parseDesktopEntry("", {}));
  EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nType=Application\nName=\xff\n", {}));
}

// Only a browser's pages are documents.
TEST(ApplicationIdentity, Browsers) {
  ApplicationsDirectory directory;
  directory.write("slack.desktop",
                  "Name=Slack\nStartupWMClass=Slack\nMimeType=x-scheme-handler/slack;\n");
  directory.write(
      "falkon.desktop",
      "Name=Falkon\nStartupWMClass=Falkon\nMimeType=text/html; x-scheme-handler/https;\n");
  directory.write("firefox.desktop", "Name=Firefox\nStartupWMClass=Nightly\n");
  directory.write(
      "chrome-abc-Default.desktop",
      "Name=Mail\nStartupWMClass=crx_abc\nExec=/opt/google/chrome/google-chrome --app-id=abc\n");
  DesktopEntries entries({directory.path()}, {"en"});
  ApplicationIdentity identity(entries);
  struct Case {
    const char* className;
    bool isBrowser;
  };
  const Case cases[]{
      {"Slack", false}, {"Falkon", true}, {"Nightly", true}, {"crx_abc", true}, {"unknown", true}};
  for (const Case& each : cases) {
    X11Window window;
    window.className = each.className;
    EXPECT_EQ(identity.isBrowser(getpid(), window), each.isBrowser) << each.className;
  }
}

TEST(ApplicationIdentity, KnownApplicationsAndTheRest) {
  ApplicationsDirectory directory;
  directory.write("firefox-esr.desktop", "Name=Firefox ESR\nExec=firefox\nStartupWMClass=f\n");
  DesktopEntries entries({directory.path()}, {"en"});
  ApplicationIdentity identity(entries);
  const ProcessIdentifier nobody = 0x3fffffff;
  X11Window window;
  window.className = "f";
  const auto known = identity.application(nobody, &window);
  EXPECT_EQ(known.bundleIdentifier, "org.mozilla.firefox");
  EXPECT_EQ(known.localizedName, "Firefox ESR");
  window.className = "Homemade";
  EXPECT_EQ(identity.application(nobody, &window).bundleIdentifier, "homemade");
  EXPECT_EQ(identity.application(nobody, nullptr).bundleIdentifier, std::nullopt);
}

TEST(PreferredLanguages, FromTheLocale) {
  struct Case {
    LocaleVariables variables;
    std::vector<std::string> expected;
  };
  const Case cases[]{
      {{}, {"en"}},
      {{"de:fr", {}, {}, "C.UTF-8"}, {"en"}},
      {{"de_AT:de::fr", {}, {}, "en_US.UTF-8"}, {"de-AT", "de", "fr", "en-US"}},
      {{{}, "", "nb_NO@x", "en_US"}, {"nb-NO"}},
      {{{}, "pt_BR.UTF-8", "de_DE", "en_US"}, {"pt-BR"}},
      {{{}, {}, {}, "../../etc"}, {"en"}},
  };
  for (const Case& each : cases)
    EXPECT_EQ(preferredLanguages(each.variables), each.expected);
}

TEST(BackOff, DoublesUntilItsLimitAndStartsAgain) {
  using std::chrono::seconds;
  BackOff backOff(seconds(1), seconds(5));
  BackOff::TimePoint now{};
  EXPECT_TRUE(backOff.isDue(now));
  for (const int expected : {1, 2, 4, 5, 5}) {
    backOff.noteFailure(now);
    EXPECT_FALSE(backOff.isDue(now + seconds(expected) - std::chrono::milliseconds(1)));
    now += seconds(expected);
    EXPECT_TRUE(backOff.isDue(now));
  }
  backOff.noteSuccess();
  EXPECT_TRUE(backOff.isDue(now));
  backOff.noteFailure(now);
  EXPECT_TRUE(backOff.isDue(now + seconds(1)));
}

TEST(ScreenCoordinates, CountFromTheMainScreen) {
  // The main monitor stands to the right of a smaller one, and lower.
  const std::vector<Rect> monitors{{{1280, 100}, {1920, 1080}}, {{0, 0}, {1280, 1024}}};
  const std::vector<Rect> frames{{{0, 0}, {1920, 1080}}, {{-1280, 156}, {1280, 1024}}};
  EXPECT_EQ(screenFrames(monitors), frames);
  EXPECT_EQ(accessibilityPoint({1290, 120}, monitors), (Point{10, 20}));
  EXPECT_EQ(rootPoint({10, 20}, monitors), (Point{1290, 120}));
  EXPECT_EQ(screenFrames({}), std::vector<Rect>{});
}

TEST(CompoundText, readsEveryKindOfSegment) {
  const struct {
    std::string_view bytes;
    std::string_view text;
  } rows[] = {
      {"Logs \x1b%G\xe2\x80\x93\x1b%@ x", "Logs – x"},  // as xterm writes it
      {"Caf\xe9", "Café"},
      {"\x1b-F\xe1\xe2 b\x1b-L\xd0", "αβ bа"},
      {"\x1b$(B\x46\x7c\x4b\x5c\x1b(B abc", "日本 abc"},
      {"\x1b$)C\xc7\xd1\x1b$(A\x56\x50", "한中"},
      {"\x1b)I\xb1\x1b(J~", "ｱ~"},
      {"\x1b%/1\x80\x8cISO8859-15\x02\xa4!", "€!"},
      {"\x9b"
       "2]ab\x9b]",
       "ab"},
      // What is unknown or cut off.
      {"a\x1b-zb\xe1", "ab\uFFFD"},
      {"a\x1b", "a"},
      {"a\x1b%G\xe2\x80", "a\uFFFD"},
      {"a\x1b%/1\xff", "a\uFFFD"},
      {"a\x1b%/1\x80\x84none", "a\uFFFD"},
      {"\x1b$(B\x46", "\uFFFD"},
  };
  for (const auto& [bytes, text] : rows)
    EXPECT_EQ(utf8FromCompoundText(bytes), text) << bytes;
  EXPECT_EQ(withoutControlCharacters("a\tb\x1b[1m\x7f ü\xc2\x9b"
                                     "2J\xc2\xa0"),
            "a b [1m  ü 2J\xc2\xa0");
}

TEST(Utf8, RefusesWhatIsNone) {
  for (const char* text : {"", "plain", "ä€😀", "\xed\x9f\xbf"}) {
    EXPECT_TRUE(isValidUtf8(text)) << text;
  }
  for (const char* text :
       {"\xff", "\xc0\xaf", "\xe2\x82", "\xed\xa0\x80", "\xf4\x90\x80\x80", "a\x80"}) {
    EXPECT_FALSE(isValidUtf8(text)) << text;
  }
  EXPECT_EQ(utf8FromLatin1("\xe4"
                           "b"),
            "äb");
}

TEST(StandardErrorLog, KeepsAMessageOnOneLine) {
  EXPECT_EQ(escapingControlCharacters("a\nb\x1b[31m\t\x7f ä"), "a\\nb\\x1b[31m\\t\\x7f ä");
}

}  // namespace
}  // namespace kestro
