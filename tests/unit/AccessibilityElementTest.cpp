#include "extractors/AccessibilityElement.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "SceneProcess.h"
#include "extractors/AccessibilityDescription.h"
#include "extractors/Box.h"
#include "platform/Workspace.h"

namespace kestro {
namespace {

// root ─ a ─ a1 ─ deep(x)
//      └ b(x)
constexpr const char* exampleTree =
    R"({"applications": [{"pid": 1, "name": "A", "accessibility": {"children": [
  {"id": "root", "AXRole": "AXGroup", "children": [
    {"id": "a", "AXRole": "AXGroup", "children": [
      {"id": "a1", "AXRole": "AXGroup", "children": [{"id": "deep", "AXRole": "AXButton", "AXSubrole": "AXTarget"}]}]},
    {"id": "b", "AXRole": "AXButton", "AXSubrole": "AXTarget", "AXDOMIdentifier": "b"},
    {"id": "c", "AXRole": "AXButton", "AXSubrole": "AXOther", "AXDOMIdentifier": "b"}]}]}}]})";

std::string idOf(const std::optional<AccessibilityElement>& element) {
  return element ? element->handle().reference().description() : "none";
}

class AccessibilityElementTest : public testing::Test {
 protected:
  AccessibilityElement element(std::string_view id) {
    return AccessibilityElement(scene.process(), scene.element(id));
  }
  SceneProcess scene{exampleTree};
};

TEST_F(AccessibilityElementTest, searchesToTheDepthGiven) {
  struct {
    const char* start;
    const char* role;
    std::int64_t depth;
    const char* found;
  } const cases[] = {
      {"root", "AXGroup", -1, "root"}, {"root", "AXGroup", 0, "root"},
      {"root", "AXButton", 0, "none"}, {"root", "AXButton", 1, "b"},
      {"root", "AXButton", 2, "b"},     // deep lies one level too low
      {"root", "AXButton", 3, "deep"},  // the earlier branch wins over the shallower match
      {"a", "AXButton", 1, "none"},    {"a", "AXButton", 2, "deep"},
      {"b", "AXGroup", 9, "none"},
  };
  for (const auto& [start, role, depth, found] : cases) {
    EXPECT_EQ(idOf(element(start).firstDescendantWithRole(role, depth)), found)
        << start << " " << role << " " << depth;
  }
  EXPECT_EQ(idOf(element("root").firstDescendantWithSubrole("AXTarget", 1)), "b");
}

TEST_F(AccessibilityElementTest, followsFirstChildrenOnly) {
  struct {
    const char* wanted;
    std::int64_t depth;
    const char* found;
  } const cases[] = {{"root", 0, "root"},
                     {"root", -1, "none"},
                     {"deep", 3, "deep"},
                     {"deep", 2, "none"},
                     {"b", 9, "none"}};
  for (const auto& [wantedId, depth, found] : cases) {
    const AccessibilityElement wanted = element(wantedId);
    const auto isWanted = [&](const AccessibilityElement& candidate) {
      return candidate == wanted;
    };
    EXPECT_EQ(idOf(element("root").firstAlongFirstChildren(depth, isWanted)), found)
        << wantedId << " " << depth;
  }
}

TEST(AccessibilityElement, theWayUpEndsWhereItLeadsBack) {
  SceneProcess scene(R"({"applications": [{"pid": 1, "accessibility": {"children": [
    {"id": "a", "children": [{"id": "b", "children": [{"id": "c"}]}]},
    {"id": "x", "AXParent": {"ref": "y"}}, {"id": "y", "AXParent": {"ref": "x"}},
    {"id": "own", "AXParent": {"ref": "own"}}]}}]})");
  const struct {
    const char *top, *element, *way;
  } cases[] = {
      {"a", "c", "b a"}, {"c", "c", ""},   {"own", "c", "b a application 1"},
      {"a", "x", "y"},   {"a", "own", ""},
  };
  for (const auto& [top, element, way] : cases) {
    std::string found;
    for (const auto& ancestor : ancestorsUpTo({scene.process(), scene.element(top)},
                                              {scene.process(), scene.element(element)})) {
      found += (found.empty() ? "" : " ") + idOf(ancestor);
    }
    EXPECT_EQ(found, way) << element;
  }
}

TEST_F(AccessibilityElementTest, filtersLists) {
  const auto children = element("root").children();
  EXPECT_EQ(idOf(firstWithRole("AXButton", children)), "b");
  EXPECT_EQ(idOf(lastWithRole("AXButton", children)), "c");
  EXPECT_EQ(idOf(firstWithRole("AXbutton", children)), "none");
  EXPECT_EQ(idOf(firstWithRoleAndSubrole("AXButton", "AXOther", children)), "c");
  EXPECT_EQ(idOf(firstWithRoleAndSubrole("AXGroup", "AXOther", children)), "none");
  EXPECT_EQ(idOf(firstWithDOMIdentifier("b", children)), "b");
  EXPECT_TRUE(containsElement(children, element("c")));
  EXPECT_FALSE(containsElement(children, element("a1")));
  const auto grandchildren = childrenOfAll({element("a"), element("b"), element("root")});
  ASSERT_EQ(grandchildren.size(), 4U);
  EXPECT_EQ(idOf(grandchildren.front()), "a1");
}

TEST(AccessibilityElement, typedReadsTakeTheirTypeOnly) {
  SceneProcess scene(R"({"applications": [{"pid": 1, "accessibility": {"children": [
    {"id": "typed", "AXURL": {"url": "https://a.example/"}, "AXValue": "text", "AXDOMClassList": ["x", "y"],
     "AXContents": [{"ref": "other"}], "AXSelectedRows": [{"ref": "other"}, {"ref": "typed"}]},
    {"id": "other", "AXURL": "https://b.example/", "AXValue": 5, "AXDOMClassList": ["x", 1],
     "AXContents": [{"ref": "typed"}, "text"], "AXParent": "none", "AXTitle": {"hang": 100, "value": "late"}}]}}]})");
  const AccessibilityElement typed(scene.process(), scene.element("typed"));
  const AccessibilityElement other(scene.process(), scene.element("other"));
  EXPECT_EQ(typed.urlString(), "https://a.example/");
  EXPECT_EQ(other.urlString(), "https://b.example/");
  EXPECT_EQ(typed.value(), "text");
  EXPECT_EQ(other.value(), std::nullopt);
  EXPECT_EQ(typed.stringListAttribute(attribute::domClassList)->size(), 2U);
  EXPECT_EQ(other.stringListAttribute(attribute::domClassList), std::nullopt);
  EXPECT_EQ(idOf(typed.contents().front()), "other");
  EXPECT_EQ(other.contents().size(), 0U);
  EXPECT_EQ(typed.selectedRows().size(), 2U);
  EXPECT_EQ(typed.childrenInNavigationOrder().size(), 0U);
  EXPECT_EQ(other.title(), std::nullopt);
  EXPECT_EQ(other.parent(), std::nullopt);
  EXPECT_EQ(idOf(typed.parent()), "application 1");
}

TEST(AccessibilityElement, theDepthOfSearchesIsReadOnce) {
  struct {
    const char* defaults;
    std::int64_t level;
  } const cases[] = {{"{}", 20},
                     {R"({"AXUIElement_maxRecursionLevel": 3})", 3},
                     {R"({"AXUIElement_maxRecursionLevel": "deep"})", 20},
                     {R"({"AXUIElement_maxRecursionLevel": 4000000000})", 1000}};
  for (const auto& [defaults, level] : cases) {
    SceneProcess scene(std::string(R"({"defaults": )") + defaults + "}");
    EXPECT_EQ(maxRecursionLevel(scene.process()), level) << defaults;
    scene.process().platform().defaults.standard().set("AXUIElement_maxRecursionLevel", 7);
    EXPECT_EQ(maxRecursionLevel(scene.process()), level) << defaults;
  }
}

TEST(AccessibilityElement, listsWindowTitlesOfApplications) {
  SceneProcess scene(R"({"applications": [
    {"pid": 1, "bundleIdentifier": "x", "accessibility": {"AXWindows": [{"ref": "1a"}, {"ref": "1b"}, {"ref": "1c"}],
      "children": [{"id": "1a", "AXTitle": "one"}, {"id": "1b", "AXTitle": ""}, {"id": "1c", "AXTitle": "three"}]}},
    {"pid": 2, "bundleIdentifier": "x", "accessibility": null},
    {"pid": 3, "bundleIdentifier": "x", "accessibility": {"AXWindows": [{"ref": "3a"}], "children": [{"id": "3a", "AXTitle": "one"}]}}]})");
  const auto applications = scene.process().platform().workspace.runningApplications("x");
  EXPECT_EQ(windowTitles(scene.process(), applications),
            (std::vector<std::string>{"one", "three", "one"}));
}

constexpr const char* described = R"({"applications": [{"pid": 1, "accessibility": {"children": [
  {"id": "w", "AXRole": "AXWindow", "AXTitle": "Draft", "AXDocument": "file:///d", "AXHelp": "", "AXValue": 7,
   "AXDescription": "a 'label'", "AXSelected": true, "AXPath": "p", "AXZoom": "full", "AXDOMIdentifier": "dom",
   "AXDOMClassList": ["x", "y"], "AXEnabled": true, "children": [
    {"AXRole": "AXGroup", "AXDocument": "not a window's", "AXTitle": "two\nlines", "AXURL": {"url": "a:b"}, "children": [
      {"AXRole": "AXButton", "AXIdentifier": "i", "AXSelected": false}]},
    {}]}]}}]})";

TEST(AccessibilityDescription, summarisesAnElement) {
  SceneProcess scene(described);
  const AccessibilityElement window(scene.process(), scene.element("w"));
  const std::string brief =
      "role='AXWindow' document='file:///d' title='Draft' label='a 'label'' domIdentifier='dom' "
      "domClassList='x, y' selected='true' path='p'";
  EXPECT_EQ(attributeSummary(window, SummaryForm::brief), brief);
  // Keys are compared as they are written: 'label' and 'domIdentifier' are no attribute's name.
  EXPECT_EQ(attributeSummary(window, SummaryForm::full),
            brief + " AXDOMIdentifier='dom' AXDescription='a 'label'' AXZoom='full'");
}

TEST(AccessibilityDescription, describesSubtreesToADepth) {
  SceneProcess scene(described);
  const AccessibilityElement window(scene.process(), scene.element("w"));
  const std::string top = attributeSummary(window, SummaryForm::brief);
  EXPECT_EQ(treeDescription(window, -1), std::nullopt);
  EXPECT_EQ(treeDescription(window, 0), top);
  EXPECT_EQ(treeDescription(window, 1),
            top + "\n|\t(0) role='AXGroup' title='two\n|\t(0) lines' url='a:b'\n|\t(1) ");
  EXPECT_EQ(treeDescription(window, 9),
            top +
                "\n|\t(0) role='AXGroup' title='two\n|\t(0) lines' url='a:b'"
                "\n|\t(0) |\t(0) role='AXButton' identifier='i'\n|\t(1) ");
}

TEST(AccessibilityDescription, searchesAndDescriptionsOfATreeWithoutEndEnd) {
  SceneProcess scene(R"({"applications": [{"pid": 1, "name": "A", "accessibility": {"children": [
    {"id": "loop", "AXRole": "AXGroup", "AXChildren": [{"ref": "loop"}, {"ref": "loop"}]}]}}]})");
  const AccessibilityElement loop(scene.process(), scene.element("loop"));
  int examined = 0;
  const auto examine = [&](const AccessibilityElement&) { return ++examined < 0; };
  EXPECT_EQ(loop.firstDescendant(100, examine), std::nullopt);
  EXPECT_EQ(examined, mostElementsExamined);
  EXPECT_EQ(std::ranges::count(*treeDescription(loop, 100), '\n'), mostElementsExamined - 1);
}

TEST(Box, sharesItsValue) {
  const Box<int> box(3);
  const auto capturing = [box] { box.value() = 4; };
  capturing();
  EXPECT_EQ(box.description(), "Box(4)");
  EXPECT_EQ(box, Box<int>(4));
  EXPECT_EQ(std::hash<Box<int>>{}(box), std::hash<int>{}(4));
}

}  // namespace
}  // namespace kestro
