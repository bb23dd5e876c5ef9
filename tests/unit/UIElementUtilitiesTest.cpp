#include "accessibility/UIElementUtilities.h"

#include <gtest/gtest.h>

#include "SceneProcess.h"

namespace kestro {
namespace {

std::string withAttribute(std::string_view value) {
  return R"({"applications": [{"pid": 1, "name": "A", "accessibility": {"children": [
    {"id": "other", "AXRole": "AXButton", "AXTitle": "OK"},
    {"id": "untitled", "AXRole": "AXGroup"},
    {"id": "roleless", "AXTitle": "x"},
    {"id": "it", "AXRole": "AXWindow", "settable": ["AXThing"], "AXThing": )" +
         std::string(value) + "}]}}]}";
}

struct DescriptionCase {
  const char* value;  // as in a scene
  std::optional<std::string> brief;
  std::optional<std::string> verbose;
};

TEST(UIElementUtilities, describesValues) {
  const DescriptionCase cases[] = {
      {R"({"point": [1.5, -2]})", "x=1.5 y=-2", "<AXPointValue x=1.5 y=-2>"},
      {R"({"point": [1234567, 1e-7]})", "x=1.23457e+06 y=1e-07",
       "<AXPointValue x=1.23457e+06 y=1e-07>"},
      {R"({"size": [100000, 0.1]})", "w=100000 h=0.1", "<AXSizeValue w=100000 h=0.1>"},
      {R"({"rect": [0, 1, 1000000, 3]})", "x=0 y=1 w=1e+06 h=3",
       "<AXRectValue  x=0 y=1 w=1e+06 h=3>"},
      {R"({"range": [-3, 9000000000]})", "pos=-3 len=9000000000",
       "<AXRangeValue pos=-3 len=9000000000>"},
      {R"([1, "two", {"ref": "other"}])", "<array of size 3>", "<array of size 3>"},
      {R"([])", "<array of size 0>", "<array of size 0>"},
      {R"({"ref": "other"})", "<AXButton: “OK”>", "<AXButton: “OK”>"},
      {R"({"ref": "untitled"})", "<AXGroup>", "<AXGroup>"},
      {R"({"ref": "roleless"})", "<AXUIElement roleless> {pid=1}",
       "<AXUIElement roleless> {pid=1}"},
      {R"("plain“”")", "plain“”", "plain“”"},
      {"true", "1", "1"},
      {"-7", "-7", "-7"},
      {"0.1", "0.1", "0.1"},
      {R"({"url": "https://a.example/b"})", "https://a.example/b", "https://a.example/b"},
      {R"({"date": "2026-03-02T09:00:00Z"})", "2026-03-02 09:00:00 +0000",
       "2026-03-02 09:00:00 +0000"},
      {R"({"data": "AQL/"})", "{length = 3, bytes = 0x0102ff}", "{length = 3, bytes = 0x0102ff}"},
      {"null", std::nullopt, std::nullopt},
      {R"({"error": -25204})", std::nullopt, std::nullopt},
  };
  for (const auto& [value, brief, verbose] : cases) {
    SceneProcess scene(withAttribute(value));
    const auto& utilities = scene.process().shared<UIElementUtilities>();
    const UIElement it = scene.element("it");
    EXPECT_EQ(utilities.descriptionForUIElement(it, "AXThing", Verbosity::brief), brief) << value;
    EXPECT_EQ(utilities.descriptionForUIElement(it, "AXThing", Verbosity::verbose), verbose)
        << value;
  }
}

struct WriteCase {
  const char* current;  // as in a scene
  const char* text;
  std::optional<AttributeValue> written;  // absent: nothing is written
};

TEST(UIElementUtilities, writesTextsAsValuesOfTheKindThereIs) {
  const WriteCase cases[] = {
      {R"({"point": [1, 2]})", "x=3.5 y=-4", Point{3.5, -4}},
      {R"({"point": [1, 2]})", "x=5", Point{5, 0}},
      {R"({"point": [1, 2]})", "y=5", Point{0, 0}},
      {R"({"point": [1, 2]})", "x=1  \t y=2", Point{1, 2}},
      {R"({"point": [1, 2]})", "x=1y=2", Point{1, 2}},
      {R"({"point": [1, 2]})", " x=1 y=2", Point{0, 0}},
      {R"({"point": [1, 2]})", "x=0.1 y=1e3", Point{static_cast<double>(0.1F), 1000}},
      {R"({"size": [1, 2]})", "w=3 h=4 more", Size{3, 4}},
      {R"({"rect": [1, 2, 3, 4]})", "x=5 y=6 w=7 h=8", Rect{{5, 6}, {7, 8}}},
      {R"({"rect": [1, 2, 3, 4]})", "x=5 y=6 h=7 w=8", Rect{{5, 6}, {0, 0}}},
      {R"({"range": [1, 2]})", "pos=-3 len=9000000000", Range{-3, 9000000000}},
      {R"({"range": [1, 2]})", "pos=3.5 len=4", Range{3, 0}},
      {R"("old")", "7", "7"},
      {R"("old")", "", ""},
      {"false", "1", 1.0},
      {"3", " 2.5e1x", 25.0},
      {"3", "many", 0.0},
      {"3", "nan", 0.0},
      {"3", "0x10", 0.0},
      {R"({"ref": "other"})", "4", 4.0},
      {"null", "4", std::nullopt},
      {R"({"error": -25204})", "4", std::nullopt},
  };
  for (const auto& [current, text, written] : cases) {
    SceneProcess scene(withAttribute(current));
    const auto& utilities = scene.process().shared<UIElementUtilities>();
    const UIElement it = scene.element("it");
    const auto before = utilities.valueOfAttribute("AXThing", it);
    utilities.setStringValue(text, "AXThing", it);
    EXPECT_EQ(scene.eventsOfKind("attribute").size(), written ? 1U : 0U) << current << " " << text;
    EXPECT_EQ(utilities.valueOfAttribute("AXThing", it), written ? written : before)
        << current << " " << text;
    utilities.setStringValue(text, std::nullopt, it);
  }
}

TEST(UIElementUtilities, convertsBetweenTheScreenCoordinateSystems) {
  SceneProcess scene(R"({"system": {"screens":
    [[0, 0, 1920, 1080], [1920, -120, 1600, 1200], [1900, 0, 100, 50]]}})");
  const auto& utilities = scene.process().shared<UIElementUtilities>();
  struct {
    Point cocoa, carbon;
  } const cases[] = {
      {{0, 0}, {0, 1079}},         {{10.5, 1079.5}, {10.5, -0.5}},
      {{1920, 1079}, {1920, 120}},  // on the second screen: the left edge belongs to it
      {{1910, 10}, {1910, 39}},     // on two screens: the later one counts
      {{0, 1080}, {0, 0}},          // above the top edge
      {{3520, 0}, {0, 0}},          // the right edge is outside
      {{-1, 5}, {0, 0}},
  };
  for (const auto& [cocoa, carbon] : cases) {
    EXPECT_EQ(utilities.carbonScreenPointFromCocoaScreenPoint(cocoa), carbon)
        << cocoa.x << " " << cocoa.y;
  }
  EXPECT_EQ(utilities.flippedScreenBounds({{10, 100}, {50, 20}}), (Rect{{10, 960}, {50, 20}}));
}

TEST(UIElementUtilities, framesNeedPositionAndSize) {
  SceneProcess scene(R"({"applications": [{"pid": 1, "accessibility": {"children": [
    {"id": "whole", "AXPosition": {"point": [10, 20]}, "AXSize": {"size": [30, 40]}},
    {"id": "half", "AXPosition": {"point": [10, 20]}, "AXSize": "wide"}]}}]})");
  const auto& utilities = scene.process().shared<UIElementUtilities>();
  EXPECT_EQ(utilities.frameOfUIElement(scene.element("whole")), (Rect{{10, 840}, {30, 40}}));
  EXPECT_EQ(utilities.frameOfUIElement(scene.element("half")), Rect{});
  EXPECT_EQ(utilities.originOfUIElement(scene.element("half")), (Point{10, 20}));
  EXPECT_EQ(utilities.sizeOfUIElement(scene.element("half")), Size{});
}

TEST(UIElementUtilities, readsNumbersAndTextsByType) {
  struct {
    const char* value;
    std::optional<double> number;
    std::optional<std::string> text;
  } const cases[] = {
      {"true", 1, std::nullopt},
      {"0.5", 0.5, std::nullopt},
      {R"("1")", std::nullopt, "1"},
      {R"("")", std::nullopt, ""},
      {"null", std::nullopt, std::nullopt},
  };
  for (const auto& [value, number, text] : cases) {
    SceneProcess scene(withAttribute(value));
    const auto& utilities = scene.process().shared<UIElementUtilities>();
    EXPECT_EQ(utilities.numberValueOfAttribute("AXThing", scene.element("it")), number) << value;
    EXPECT_EQ(utilities.stringValueOfAttribute("AXThing", scene.element("it")), text) << value;
  }
}

TEST(UIElementUtilities, describesAnElementWithLineageAttributesAndActions) {
  SceneProcess scene(R"({"applications": [{"pid": 1, "name": "Editor", "accessibility": {
    "id": "app", "AXRole": "AXApplication", "AXTitle": "Editor", "children": [
      {"id": "w", "AXRole": "AXWindow", "AXTitle": "Draft", "children": [
        {"id": "it", "AXRole": "AXButton", "AXDescription": "Close", "AXEnabled": true,
         "AXHelp": null, "settable": ["AXEnabled"], "actions": {"AXPress": "press"}}]}]}}]})");
  const auto& utilities = scene.process().shared<UIElementUtilities>();
  const std::string text = utilities.stringDescriptionOfUIElement(scene.element("it"));
  EXPECT_EQ(text.substr(0, text.find("\n\n")),
            "<AXApplication: “Editor”>\n <AXWindow: “Draft”>\n  <AXButton>");
  for (const char* line :
       {"\nAttributes:\n", "\n   AXDescription:  “Close”\n", "\n   AXEnabled (W):  “1”\n",
        "\n   AXHelp:  “(nil)”\n", "\n   AXParent:  “<AXWindow: “Draft”>”\n"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << "in\n" << text;
  }
  EXPECT_TRUE(text.ends_with("\nActions:\n   AXPress - press\n")) << text;

  struct {
    const char* element;
    const char* description;
  } const descriptions[] = {{"it", "Close"}, {"w", "No Description"}};
  for (const auto& [element, description] : descriptions) {
    EXPECT_EQ(utilities.descriptionOfAXDescriptionOfUIElement(scene.element(element)), description);
  }
  EXPECT_TRUE(utilities.isApplicationUIElement(scene.element("app")));
  EXPECT_FALSE(utilities.isApplicationUIElement(scene.element("w")));
}

TEST(UIElementUtilities, countsChildrenWithoutReadingThem) {
  SceneProcess scene(R"({"applications": [{"pid": 1, "accessibility": {"children": [
    {"id": "list", "children": [{"id": "row", "AXRole": "AXRow"}, {}, {}]}]}}]})");
  const auto& utilities = scene.process().shared<UIElementUtilities>();
  const UIElement list = scene.element("list");
  const auto before = scene.process().platform().accessibility.requestCount();
  EXPECT_EQ(utilities.descriptionForUIElement(list, "AXChildren", Verbosity::verbose),
            "<array of size 3>");
  EXPECT_EQ(scene.process().platform().accessibility.requestCount() - before, 1U);
}

TEST(UIElementUtilities, lineageEndsWhereTheChainCloses) {
  SceneProcess scene(R"({"applications": [{"pid": 1, "accessibility": {"children": [
    {"id": "a", "AXRole": "AXGroup", "AXTitle": "a", "AXParent": {"ref": "b"}},
    {"id": "b", "AXRole": "AXGroup", "AXTitle": "b", "AXParent": {"ref": "a"}}]}}]})");
  EXPECT_EQ(scene.process().shared<UIElementUtilities>().lineageOfUIElement(scene.element("a")),
            (std::vector<std::string>{"<AXGroup: “b”>", "<AXGroup: “a”>"}));
}

}  // namespace
}  // namespace kestro
