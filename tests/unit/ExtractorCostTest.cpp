// What the first sample of each extractor's scene costs, as it is and with a page of 5,000 elements
// more, which must not change what is found. The table of docs/extractors.md is the list of scenes
// and of what is expected.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "SceneProcess.h"
#include "probe/KSInfoExtractor.h"

namespace kestro {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint64_t mostRequests = 400;

std::string contentsOf(const std::string& path) {
  std::ifstream file(std::string(KESTRO_SOURCE_DIRECTORY "/") + path);
  EXPECT_TRUE(file.is_open()) << path;
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

// A conversation, as JSON: 1,000 messages of five elements.
std::string messages() {
  std::string list;
  for (int number = 0; number < 1000; ++number) {
    list += fmt::format(
        R"({}{{"AXRole": "AXGroup", "AXDOMClassList": ["message"], "children": [
          {{"AXRole": "AXButton", "AXTitle": "More"}}, {{"AXRole": "AXLink", "AXTitle": "Message {}"}},
          {{"AXRole": "AXGroup", "children": [{{"AXRole": "AXStaticText", "AXValue": "Text"}}]}}]}})",
        number == 0 ? "" : ", ", number);
  }
  return R"({"AXRole": "AXGroup", "children": [)" + list + "]}";
}

Json* firstPage(Json& element) {
  if (element.value("AXRole", Json()) == "AXWebArea") return &element;
  if (!element.contains("children")) return nullptr;
  for (Json& child : element["children"]) {
    if (Json* page = firstPage(child)) return page;
  }
  return nullptr;
}

// At the end of the page that each window shows, or of the window itself.
std::string withLargePages(const std::string& scene) {
  constexpr std::string_view place = "@messages";
  Json json = Json::parse(scene, nullptr, true, true);  // with comments
  for (Json& application : json["applications"]) {
    if (!application.contains("accessibility") || application["pid"] != json["frontmost"]) continue;
    for (Json& window : application["accessibility"]["children"]) {
      Json* page = firstPage(window);
      (page ? *page : window)["children"].push_back(place);
    }
  }
  return std::regex_replace(json.dump(), std::regex(fmt::format("\"{}\"", place)), messages());
}

struct MeasuredSample {
  ActivityDetails details;
  std::uint64_t requests;
};

MeasuredSample firstSample(const std::string& text) {
  SceneProcess scene(text);
  auto& probe = scene.process().shared<KSInfoExtractor>();
  const Accessibility& accessibility = scene.process().platform().accessibility;
  const auto before = accessibility.requestCount();
  auto activity = probe.currentActivity();
  if (!activity) return {};
  probe.callInfoExtractorForActivity(*activity);
  return {activity->details, accessibility.requestCount() - before};
}

TEST(ExtractorCost, isAsDocumentedAndBounded) {
  const std::string documentation = contentsOf("docs/extractors.md");
  const std::regex row(R"(\| `([a-z0-9-]+/[a-z0-9-]+)` \| (\d+) \| (\d+) \|)");
  std::size_t rows = 0;
  for (std::sregex_iterator match(documentation.begin(), documentation.end(), row), end;
       match != end; ++match, ++rows) {
    const std::string scene = (*match)[1];
    const std::string text = contentsOf("scenes/" + scene + ".json");
    const MeasuredSample small = firstSample(text);
    const MeasuredSample large = firstSample(withLargePages(text));
    EXPECT_EQ(small.details, large.details) << scene;
    EXPECT_LE(large.requests, mostRequests) << scene;
    EXPECT_EQ((*match)[0],
              fmt::format("| `{}` | {} | {} |", scene, small.requests, large.requests));
  }
  // Every row is one that was compared; the first two are the table's head.
  const std::string section = documentation.substr(documentation.find("\n## Requests\n"));
  const std::regex line(R"(\n\|)");
  const std::string table = section.substr(0, section.find("\n## ", 1));
  const auto lines = std::distance(std::sregex_iterator(table.begin(), table.end(), line), {});
  EXPECT_EQ(rows + 2, static_cast<std::size_t>(lines));
}

}  // namespace
}  // namespace kestro
