#include <gtest/gtest.h>

#include "FakePlatform.h"
#include "platform/Process.h"
#include "product/KestroDatabase.h"
#include "product/KestroLegacy.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

struct TitleCase {
  std::string title;
  std::string word;
  std::optional<std::string> expected;       // with the flag
  std::optional<std::string> withoutFlag{};  // absent: as with the flag
};

TEST(TextHelpers, removingTitlePrefixesAndSuffixes) {
  const std::string path = "/Users/me/Films/Holiday - Zoom.prproj";
  const TitleCase cases[] = {
      {"Meet - abc", "Meet", "abc"},
      {"Meet – abc-defg-hij", "Meet", "abc-defg-hij"},
      {"Weekly - Zoom", "Zoom", "Weekly"},
      {"Weekly — Zoom", "Zoom", "Weekly"},
      {"Weekly\u00A0|\u00A0Zoom ", "Zoom", "Weekly"},
      {"Zoom • Weekly", "Zoom", "Weekly"},
      {"Zoom: Weekly", "Zoom", "Weekly"},
      {"Weekly (Zoom)", "Zoom", "Weekly"},
      {"[Zoom] Weekly", "Zoom", "Weekly"},
      {"Zoom - Weekly - Zoom", "Zoom", "Weekly"},
      {"Zoom", "Zoom", std::nullopt, "Zoom"},
      {" Zoom\t", " Zoom ", std::nullopt, "Zoom"},
      {"Zoom -", "Zoom", std::nullopt, "Zoom"},
      {"Zoom - Zoom", "Zoom", std::nullopt, "Zoom"},
      {"Zoominfo - x", "Zoom", "Zoominfo - x"},
      {"x - Superzoom", "zoom", "x - Superzoom"},
      {"Zoom-in", "Zoom", "Zoom-in"},
      {"Zoom -in", "Zoom", "Zoom -in"},
      {"Weekly Zoom", "Zoom", "Weekly Zoom"},
      {"(Zoom)Weekly", "Zoom", "(Zoom)Weekly"},
      {"a - Zoom - b", "Zoom", "a - Zoom - b"},
      {"weekly - zoom", "Zoom", "weekly - zoom"},
      {"会议 - 腾讯会议", "腾讯会议", "会议"},
      {"  plain ", "", "plain"},
      {"", "", ""},
      {"", "Zoom", std::nullopt, "Zoom"},
      {path, path, std::nullopt, path},
      {"  " + path + "\u00A0", path, std::nullopt, path},
      {path + "/x", path, path + "/x"},
      {"Cut 2 - " + path, path, "Cut 2"},
      {"\xFF - Zoom", "Zoom", "\xFF"},
  };
  for (const TitleCase& row : cases) {
    SCOPED_TRACE(row.title);
    EXPECT_EQ(removingTitlePrefixesAndSuffixes(row.title, row.word, true), row.expected);
    EXPECT_EQ(removingTitlePrefixesAndSuffixes(row.title, row.word, false),
              row.withoutFlag ? row.withoutFlag : row.expected);
  }
}

struct TextCase {
  std::string_view text;
  std::string_view expected;
};

TEST(TextHelpers, removingTrailingEmojiAndWhitespace) {
  const TextCase cases[] = {
      {"general 🎉", "general"},
      {"general 🎉 \u00A0🚀\n", "general"},
      {"family 👨‍👩‍👧‍👦", "family"},
      {"skin 👋🏽", "skin"},
      {"skin ☝🏽", "skin"},
      {"flag 🇩🇪", "flag"},
      {"flag 🏴󠁧󠁢󠁥󠁮󠁧󠁿", "flag"},
      {"keycap 1️⃣", "keycap"},
      {"heart ❤️", "heart"},
      {"heart on fire ❤‍🔥", "heart on fire"},
      {"text heart ❤", "text heart ❤"},
      {"shown as text ⌚︎", "shown as text ⌚︎"},
      {"room 101", "room 101"},
      {"Acme© *", "Acme© *"},
      {"Acme ©", "Acme ©"},
      {"a 🎉 b", "a 🎉 b"},
      {"नमस्ते ", "नमस्ते"},
      {"e\u0301 ", "e\u0301"},
      {"🎉", ""},
      {" ", ""},
      {"", ""},
      {"bad \xFF\xF0\x9F", "bad \xFF\xF0\x9F"},
      {"bad \xFF 🎉", "bad \xFF"},
  };
  for (const TextCase& row : cases) {
    EXPECT_EQ(removingTrailingEmojiAndWhitespace(row.text), row.expected) << row.text;
  }
}

TEST(TextHelpers, removingInvisibleControlCharacters) {
  const TextCase cases[] = {
      {"\u200EWhatsApp", "WhatsApp"},
      {"\u200F\u202Aשלום\u202C", "שלום"},
      {"\uFEFFa\u200Bb\u00ADc\u2060", "abc"},
      {"a\u200Db", "ab"},
      {"می\u200Cخواهم", "میخواهم"},
      {"👨‍👩‍👧 \u200D", "👨‍👩‍👧 "},
      {"👩🏽‍🚀❤️‍🔥", "👩🏽‍🚀❤️‍🔥"},
      {"🏴󠁧󠁢󠁥󠁮󠁧󠁿", "🏴󠁧󠁢󠁥󠁮󠁧󠁿"},
      {"a\U000E0067\U000E0062", "a"},
      {"tab\tline\nbell\x07return\r\x7F\u0085", "tab\tline\nbellreturn"},
      {"\u0600١", "\u0600١"},
      {"bad \xFF\xC3", "bad \xFF\xC3"},
      {"", ""},
  };
  for (const TextCase& row : cases) {
    EXPECT_EQ(removingInvisibleControlCharacters(row.text), row.expected) << row.text;
  }
}

TEST(TextHelpers, truncated) {
  using enum TruncationPosition;
  const struct {
    std::string_view text;
    std::size_t length;
    TruncationPosition position;
    std::string_view expected;
  } cases[] = {
      {"abcdef", 6, end, "abcdef"},
      {"abcdef", 5, end, "abcd…"},
      {"abcdef", 5, start, "…cdef"},
      {"abcdef", 5, middle, "ab…ef"},
      {"abcdef", 4, middle, "ab…f"},
      {"abcdef", 1, middle, "…"},
      {"abcdef", 0, end, ""},
      {"e\u0301e\u0301e\u0301", 2, end, "e\u0301…"},
      {"👨‍👩‍👧‍👦👨‍👩‍👧‍👦👨‍👩‍👧‍👦", 2, end,
       "👨‍👩‍👧‍👦…"},
      {"👨‍👩‍👧‍👦👨‍👩‍👧‍👦", 2, end,
       "👨‍👩‍👧‍👦👨‍👩‍👧‍👦"},
      {"🇩🇪🇫🇷🇮🇹", 2, start, "…🇮🇹"},
      {"\xFF\xFF\xFF", 2, end, "\xFF…"},
      {"", 3, end, ""},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(truncated(row.text, row.length, row.position), row.expected) << row.text;
  }
}

TEST(TextHelpers, exactPrefixesAndSuffixes) {
  EXPECT_EQ(removingSuffixIfPresent("a - Discord - Discord", " - Discord"), "a - Discord");
  EXPECT_EQ(removingSuffixIfPresent("cord", " - Discord"), "cord");
  EXPECT_EQ(removingPrefixIfPresent("//a", "/"), "/a");
  EXPECT_EQ(removingPrefixIfPresent("", "/"), "");
}

TEST(ProductPreferences, advancedTrackingIsOnUnlessSwitchedOff) {
  fakes::FakePlatform fake;
  Process process(fake.platform);
  const HelperPreferences preferences(process);
  UserDefaults& store = fake.defaults.product(ProductStore::helperPreferences);
  EXPECT_TRUE(preferences.advancedAccessibilityTrackingEnabled());
  store.set("advancedAccessibilityTrackingEnabled", "perhaps");
  EXPECT_TRUE(preferences.advancedAccessibilityTrackingEnabled());
  store.set("advancedAccessibilityTrackingEnabled", false);
  EXPECT_FALSE(preferences.advancedAccessibilityTrackingEnabled());
}

}  // namespace
}  // namespace kestro
