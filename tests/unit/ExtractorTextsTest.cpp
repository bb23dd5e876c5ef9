// How extractors read titles: the pure halves, a table each. A path is written with " > " between
// its texts.
#include <gtest/gtest.h>

#include "FakePlatform.h"
#include "extractors/AdobeProjectPathInfoExtractor.h"
#include "extractors/ChromeProfileInfoExtractor.h"
#include "extractors/DiaInfoExtractor.h"
#include "extractors/DiscordInfoExtractor.h"
#include "extractors/FirefoxInfoExtractor.h"
#include "extractors/LogicProInfoExtractor.h"
#include "extractors/MicrosoftTeamsInfoExtractor.h"
#include "extractors/NotesInfoExtractor.h"
#include "extractors/SafariInfoExtractor.h"
#include "extractors/SlackInfoExtractor.h"
#include "extractors/TitleParts.h"
#include "platform/Process.h"

namespace kestro {
namespace {

struct TextCase {
  std::string text, expected;
};

template <class Extractor>
class WithExtractor : public testing::Test {
 protected:
  fakes::FakePlatform fake_;
  Process process_{fake_.platform};
  Extractor extractor_{process_};
};
using SlackTexts = WithExtractor<SlackInfoExtractor>;
using MicrosoftTeamsTexts = WithExtractor<MicrosoftTeamsInfoExtractor>;
using AdobeTexts = WithExtractor<AdobeProjectPathInfoExtractor>;

TEST(DiscordTexts, contextPath) {
  const TextCase cases[] = {
      {"#harbour | Studio - Discord", "Studio > #harbour"},
      {"Discord | #harbour | Studio", "Studio > #harbour"},
      {"Friends - Discord", "Friends"},
      {"Mara|Jo | Discord - Discord", "Mara|Jo"},
      {"Discord Fans - Discord", "Discord Fans"},
      {"#harbour | Studio\u2069 - Discord\u2069", "Studio\u2069 > #harbour"},
      {"#harbour | \u2068Discord\u2069", "#harbour"},
      {"Discord", ""},
      {" - Discord", ""},
      {"", ""},
  };
  for (const auto& [title, path] : cases) {
    EXPECT_EQ(joined(discordContextPath(title), " > "), path) << title;
  }
}

TEST_F(SlackTexts, contextPath) {
  const TextCase cases[] = {
      {"general (Channel) - Studio - Slack", "Studio > general (Channel)"},
      {"Slack | general | Studio", "Studio > general"},
      {"Slack [tag] | a - b | Studio", "Studio > a - b"},
      {"Slack [] | a", "a > Slack []"},
      {"Slackers | Studio", "Studio > Slackers"},
      {"general |  | Studio", "Studio >  > general"},
      {"*  | Studio", "Studio > "},
      {"1:02:03 | a | Studio", "Studio > a"},
      {"02:03 | a", "a"},
      {"12:02:03 | a", "a"},
      {"123:02:03 | a", "a > 123:02:03"},
      {"9 new items | a", "a"},
      {"many new items | a", "a"},
      {"3 mentions | a", "a"},
      {"3 | a", "a > 3"},
      {"* a | ! b | ^ c", "c > b > a"},
      {"*a | b", "b > *a"},
      {"a | 1000 replies", "a"},
      {"1000 replies", "1000 replies"},
      {"a | Studio 🎉 ", "Studio > a"},
      {"general | Studio | \u2068Slack\u2069", "Studio > general"},
      {"Slack", ""},
      {"🎉", ""},
  };
  for (const auto& [title, path] : cases) {
    EXPECT_EQ(joined(extractor_.contextPath(title), " > "), path) << title;
  }
}

TEST_F(MicrosoftTeamsTexts, contextPath) {
  const TextCase cases[] = {
      {"Chat | Mara Lind (External) | Microsoft Teams", "Mara Lind"},
      {"Plan (a) (b) | Studio (c) | Microsoft Teams", "Plan (a) > Studio (c)"},
      {"(External) | Microsoft Teams", "(External)"},
      {"Plan () | x", "Plan () > x"},
      {"Chat with Jo | Microsoft Teams", "Chat with Jo"},
      {"Chat\u200E | \u2068Mara\u2069 | Microsoft Teams\u200E", "\u2068Mara\u2069"},
      {"Microsoft Teams", ""},
      {" | Microsoft Teams", ""},
      {"Mara Lind |  | Studio", "Mara Lind >  > Studio"},
      {"", ""},
  };
  for (const auto& [title, path] : cases) {
    EXPECT_EQ(joined(extractor_.contextPath(title), " > "), path) << title;
  }
}

TEST_F(AdobeTexts, projectPathAndRest) {
  struct Case {
    std::string title, path, rest;
  };
  const Case cases[] = {
      {"Adobe Premiere Pro 2025 - /a/b c.prproj *", "/a/b c.prproj", ""},
      {"Adobe After Effects 2025 - /a/x.aep", "/a/x.aep", ""},
      {"Adobe After Effects 2025 - Card - /a/x.aep *", "/a/x.aep", "Card"},
      {"Adobe Premiere Pro - /a/x.prproj", "/a/x.prproj", "Adobe Premiere Pro"},
      {"Card * - /a/x.aep", "/a/x.aep", "Card"},
      {"Card  * - /a/x.aep", "/a/x.aep", "Card "},
      {"1 /a/x.aep 2", "/a/x.aep", "1  2"},
      {"/a/x.aep.prproj", "/a/x.aep.prproj", ""},
      {"Adobe Premiere Pro 2025 - /a/b.mov", "", ""},
      {"x.prproj", "", ""},
      {"/a/b.prproj - Card", "/a/b.prproj", "Card"},
      {"Adobe After Effects 2025 - /a/x.aep (converted)", "/a/x.aep", " (converted)"},
  };
  for (const auto& [title, path, rest] : cases) {
    EXPECT_EQ(extractor_.projectPath(title).value_or(""), path) << title;
    if (path.empty()) continue;
    EXPECT_EQ(extractor_.titleWithout(path, title), rest) << title;
  }
}

TEST_F(AdobeTexts, aPathThatStandsTwiceIsRemovedTwice) {
  EXPECT_EQ(extractor_.titleWithout("/a/x.aep", "Card /a/x.aep of /a/x.aep"), "Card  of ");
}

TEST(DiaTexts, title) {
  struct Case {
    std::string window, page, expected;
  };
  const Case cases[] = {
      {"Work: Tide ta…", "Tide tables", "Tide tables – Work"},
      {"Work: Tide tables", "Tide tables", "Tide tables – Work"},
      {"Work: Tides", "Tide tables", "Tide tables"},
      {"Work: …", "Tide tables", "Tide tables"},
      {": Tide", "Tide tables", "Tide tables – "},
      {"Work:Tide", "Tide tables", "Tide tables"},
      {"Work: Tide ta…", "\u200ETide tables", "\u200ETide tables – Work"},
      {"Work: Tide ta…\u2069", "Tide tables", "Tide tables – Work"},
      {"Café: Marée h…", "Mare\u0301e haute", "Mare\u0301e haute – Café"},
      {"Work: Mare…", "Mare\u0301e haute", "Mare\u0301e haute"},
      {"Work: \u2068…\u2069", "Tide tables", "Tide tables"},
      {"a:b: Tide", "Tide tables", "Tide tables"},
      {"Work: a: b…", "a: b: c", "a: b: c – Work"},
  };
  for (const auto& [window, page, expected] : cases) {
    EXPECT_EQ(diaTitle(window, page), expected) << window;
  }
}

TEST(BrowserTexts, privateTitles) {
  struct Case {
    const char* title;
    bool isFirefoxPrivate, isChromePrivate;
  };
  const Case cases[] = {
      {"Page — Firefox (Private Browsing)", true, false},
      {"Page — Firefox Private Browsing", true, false},
      {"Page — Privater Modus", true, false},
      {"Page — privé", true, false},
      {"Page — prive\u0301\u2069", true, false},
      {"Page (Incognito)\u2069", false, true},
      {"(Private Browsing) — Wiki", false, false},
      {"Page — private browsing", false, false},
      {"Page (Incognito)", false, true},
      {"Page (anonym)", false, true},
      {"Page - Brave (Private)", false, true},
      {"Page - Brave (Privat)", false, true},
      {"Page(Incognito)", false, false},
      {"Page (Private)", false, false},
      {"", false, false},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(isFirefoxPrivateTitle(row.title, "privé"), row.isFirefoxPrivate) << row.title;
    EXPECT_EQ(isChromePrivateTitle(row.title), row.isChromePrivate) << row.title;
  }
  for (const char* nothing : {"", "\u200E"}) {
    EXPECT_FALSE(isFirefoxPrivateTitle("Page", nothing)) << "it would make all pages private";
  }
}

TEST(BrowserTexts, titleWithProfile) {
  EXPECT_EQ(titleWithProfile("Inbox", "Work"), "Inbox – Work");
  EXPECT_EQ(titleWithProfile("Homework Work", "Work"), "Homework Work");
  EXPECT_EQ(titleWithProfile("Menu Café", "\u200ECafe\u0301"), "Menu Café");
  EXPECT_EQ(titleWithProfile("", "Work"), "Work");
  EXPECT_EQ(titleWithProfile(std::nullopt, "Work"), "Work");
}

TEST(LogicProTexts, titleBeforeLastColon) {
  EXPECT_EQ(titleBeforeLastColon("Bounce: Song: Take 2"), "Bounce: Song");
  EXPECT_EQ(titleBeforeLastColon("Bounce:Song"), "Bounce:Song");
}

TEST(SafariTexts, historyLast) {
  struct Row {
    std::string title;
    std::string_view showHistory;
    std::string_view result;
  };
  const std::vector<Row> rows{
      {"History — Example", "Show All History", "Example — History"},
      {"Verlauf — A — B", "Gesamten Verlauf anzeigen", "A — B — Verlauf"},
      {"Example — History", "Show All History", "Example — History"},
      {"De\u0301but — A", "Afficher le Début", "A — De\u0301but"},
      {"History", "Show All History", "History"},
      {" — Example", "Show All History", " — Example"},
      {"History - Example", "Show All History", "History - Example"},
      {"history — Example", "Show All History", "history — Example"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(titleWithHistoryLast(row.title, row.showHistory), row.result) << row.title;
}

TEST(SafariTexts, isAddress) {
  for (const char* address : {"https://a.example/", "file:///Users/kim", "x://"})
    EXPECT_TRUE(isAddress(address)) << address;
  for (const char* text : {"", "a.example", "mailto:kim@a.example", "https:/a.example"})
    EXPECT_FALSE(isAddress(text)) << text;
  EXPECT_FALSE(isAddress(std::nullopt));
}

TEST(NotesTexts, noteTitle) {
  const std::string fifty = "äbcdefghijäbcdefghijäbcdefghijäbcdefghijäbcdefghij";
  EXPECT_EQ(noteTitle("Shopping"), "Shopping");
  EXPECT_EQ(noteTitle(fifty), fifty);
  EXPECT_EQ(noteTitle(fifty + "k"), "äbcdefghijäbcdefghijäbcdefghijäbcdefghijäbcdefghi…");
  EXPECT_EQ(noteTitle(""), "");
  EXPECT_EQ(noteTitle("…the rest"), std::nullopt);
  EXPECT_EQ(noteTitle("\u200E…the rest"), std::nullopt);
  EXPECT_EQ(noteTitle("the …"), "the …");
}

}  // namespace
}  // namespace kestro
