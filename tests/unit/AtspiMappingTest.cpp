#include <gtest/gtest.h>

#include <algorithm>

#include "linux/accessibility/AtspiConnection.h"
#include "linux/accessibility/AtspiRoles.h"
#include "linux/accessibility/EmbeddedTexts.h"
#include "linux/windows/WindowMatching.h"

namespace kestro {
namespace {

AtspiTraits traits(std::uint64_t states, std::string xmlRoles, bool isTopLevel) {
  return {AtspiStates(states), std::move(xmlRoles), "", "", isTopLevel};
}

AtspiTraits markup(std::string tag, std::string xmlRoles = "", std::string hasPopup = "") {
  return {{}, std::move(xmlRoles), std::move(tag), std::move(hasPopup), false};
}

constexpr std::uint64_t bit(AtspiState state) {
  return 1ULL << static_cast<unsigned>(state);
}

TEST(AtspiMapping, RolesAndSubroles) {
  struct Case {
    std::uint32_t role;  // as it comes over the bus
    AtspiTraits traits;
    const char* expected;  // role, then subrole
  };
  const Case cases[]{
      {23, {}, "AXWindow AXStandardWindow"},
      {16, traits(0, "", true), "AXWindow AXDialog"},
      {16, traits(0, "dialog", false), "AXGroup AXApplicationDialog"},
      {2, traits(0, "", false), "AXGroup -"},
      {95, {}, "AXWebArea -"},
      {28, {}, "AXGroup -"},
      {110, traits(0, "navigation", false), "AXGroup AXLandmarkNavigation"},
      {110, traits(0, "unheard-of main", false), "AXGroup AXLandmarkMain"},
      {62, {}, "AXButton AXToggle"},
      {79, {}, "AXTextField -"},
      {61, traits(bit(AtspiState::multiLine), "", false), "AXTextArea -"},
      {40, {}, "AXTextField AXSecureTextField"},
      {11, {}, "AXPopUpButton -"},
      {11, traits(bit(AtspiState::editable), "", false), "AXComboBox -"},
      {37, {}, "AXRadioButton AXTabButton"},
      {90, {}, "AXRow AXTableRow"},
      {91, {}, "AXRow AXOutlineRow"},
      {94, {}, "AXTextArea -"},
      // Elements of web pages, and their namesakes in other applications.
      {39, markup("div", "group"), "AXGroup AXApplicationGroup"},
      {39, {}, "AXGroup -"},
      {78, markup("body", "application"), "AXGroup AXWebApplication"},
      {71, markup("header"), "AXGroup AXSectionHeader"},
      {49, markup("div", "tabpanel"), "AXGroup AXTabPanel"},
      {49, {}, "AXScrollArea -"},
      {82, markup("div", "document"), "AXGroup AXDocument"},
      {82, {}, "AXWebArea -"},
      {43, markup("button", "", "menu"), "AXPopUpButton -"},
      {43, markup("button", "", "false"), "AXButton -"},
      {43, markup("", "", "menu"), "AXButton -"},
      {62, markup("button"), "AXCheckBox AXToggleButton"},
      {62, markup("div", "switch"), "AXCheckBox AXSwitch"},
      {62, markup("summary"), "AXButton AXToggle"},
      {109, markup("article"), "AXGroup AXDocumentArticle"},
      {4711, {}, "AXUnknown -"},
  };
  for (const Case& each : cases) {
    const auto role = static_cast<AtspiRole>(each.role);
    const std::string found =
        std::string(axRole(role, each.traits)) + " " + axSubrole(role, each.traits).value_or("-");
    EXPECT_EQ(found, each.expected) << each.role;
    if (found.starts_with("AXUnknown")) continue;
    const auto searched = atspiRoles(axRole(role, each.traits)).roles;
    EXPECT_NE(std::ranges::find(searched, role), searched.end()) << each.role;
  }
}

TEST(AtspiMapping, ErrorsOfTheBus) {
  struct Case {
    int result;
    const char* name;
    AccessibilityError expected;
  };
  const Case cases[]{
      {-EIO, "org.freedesktop.DBus.Error.UnknownObject", AccessibilityError::invalidUIElement},
      {-EIO, "org.freedesktop.DBus.Error.UnknownMethod", AccessibilityError::attributeUnsupported},
      {-EIO, "org.freedesktop.DBus.Error.ServiceUnknown", AccessibilityError::cannotComplete},
      {-EIO, "org.freedesktop.DBus.Error.NoReply", AccessibilityError::cannotComplete},
      {-ETIMEDOUT, "org.freedesktop.DBus.Error.Timeout", AccessibilityError::cannotComplete},
      {-ECONNRESET, nullptr, AccessibilityError::cannotComplete},
      {-EIO, "org.example.Unheard", AccessibilityError::failure},
      {-EINVAL, nullptr, AccessibilityError::failure},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(accessibilityError(each.result, each.name), each.expected)
        << (each.name ? each.name : "no name");
  }
}

TEST(EmbeddedTexts, StandWhereTheirMarksAre) {
  struct Case {
    const char* text;
    std::vector<EmbeddedText> embedded;
    const char* expected;
  };
  const Case cases[]{
      {"plain\n", {}, "plain"},
      {"\uFFFC\uFFFC",
       {{"Dear Mara,", true}, {"the lights are on.", true}},
       "Dear Mara,\nthe lights are on."},
      {"\uFFFC\uFFFC", {{"one\n", true}, {"", true}}, "one"},
      {"before\uFFFCafter", {{"block", true}}, "before\nblock\nafter"},
      {"see \uFFFC there", {{"the link", false}}, "see the link there"},
      {"a\uFFFCb\uFFFC", {{"1", false}}, "a1b"},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(withEmbeddedTexts(each.text, each.embedded), each.expected) << each.text;
  }
}

TEST(WindowMatching, PrefersTheTitleThenThePlace) {
  const Rect here{{100, 100}, {800, 600}};
  const Rect borders{{95, 75}, {810, 630}};
  const Rect elsewhere{{900, 100}, {800, 600}};
  X11Window window;
  window.name = "Inbox";
  window.bounds = here;
  struct Case {
    std::vector<AccessibleWindow> windows;
    std::optional<std::size_t> expected;
  };
  const Case cases[]{
      {{}, std::nullopt},
      {{{"Other", elsewhere}}, std::nullopt},
      {{{"Other", borders}}, 0},
      {{{"Other", here}, {"Inbox - Person 1", elsewhere}}, 1},
      {{{"Inbox (Incognito)", here}, {"Inbox", elsewhere}}, 0},
      {{{"Inbox - Person 1", elsewhere}, {"Inbox", elsewhere}}, 1},
      {{{"Inbox", elsewhere}, {"Inbox", here}}, 1},
      {{{"Inbox", std::nullopt}, {std::nullopt, here}}, 0},
      {{{"", elsewhere}, {std::nullopt, std::nullopt}}, std::nullopt},
  };
  for (const Case& each : cases)
    EXPECT_EQ(bestMatch(each.windows, window), each.expected);
}

}  // namespace
}  // namespace kestro
