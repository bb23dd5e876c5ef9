#include "app/diagnostics/AccessibilityDumper.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "SceneProcess.h"
#include "extractors/AccessibilityElement.h"

namespace kestro {
namespace {

// Every group holds the window twice, so that each level of the tree doubles.
TEST(AccessibilityDumper, treeThatLeadsBackToItself) {
  constexpr const char* scene = R"({"applications": [{"pid": 1, "bundleIdentifier": "loop",
    "accessibility": {"AXMainWindow": {"ref": "window"}, "children": [
      {"id": "window", "AXRole": "AXWindow", "children": [
        {"AXRole": "AXGroup", "AXChildren": [{"ref": "window"}, {"ref": "window"}]}]}]}}]})";
  SceneProcess desktop(scene);
  AccessibilityDumper::dumpWindowsForApplicationWithBundleIdentifier(desktop.process(), "loop",
                                                                     "AXGroup");
  constexpr std::size_t aroundMatches = 10;
  const auto printed = desktop.eventsOfKind("print");
  EXPECT_GT(printed.size(), 4 * mostElementsExamined);
  EXPECT_LT(printed.size(), aroundMatches * mostElementsExamined);
  const auto isNotice = [](const SceneProcess::Event& event) {
    return event.fields.find("text")->get<std::string>()->find("too much to show") !=
           std::string::npos;
  };
  EXPECT_EQ(std::ranges::count_if(printed, isNotice), 1);
}

}  // namespace
}  // namespace kestro
