// What a scene that cannot be read is answered with: the place and the reason, exactly.
#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "scene/Scene.h"

namespace kestro {
namespace {

struct Row {
  const char* scene;
  const char* message;  // after the name of the file; "…" stands for a reason in whatever words
};

const Row rows[] = {
    // Syntax: the place is ours, the words are those of the JSON library's version
    {"", ":1:1: …"},
    {"{\n  \"end\": 1,\n  oops\n}", ":3:3: …"},
    {"{\"end\": 1e999}", ":1:13: …"},
    {"{} trailing", ":1:6: …"},
    {"{\"description\": \"\xff\"}", ":1:18: …"},
    {"{\"end\": 1, \"end\": 2}", ": /end: duplicate key"},
    {R"({"applications": [{"pid": 1}, {"pid": 2, "accessibility": {"AXTitle": "a", "AXTitle": "b"}}]})",
     ": /applications/1/accessibility/AXTitle: duplicate key"},

    // Types and keys
    {"[]", ": expected an object, found a list"},
    {R"({"ends": 3})", ": /ends: unknown key"},
    {R"({"a/b~c": 3})", ": /a~1b~0c: unknown key"},
    {R"({"description": 3})", ": /description: expected a text, found a number"},
    {R"({"about": ["activity", null]})", ": /about/1: expected a text, found null"},
    {R"({"arguments": "-x"})", ": /arguments: expected a list, found a text"},
    {R"({"bundle": {"version": "1"}})", ": /bundle/version: unknown key"},
    {R"({"system": {"accessibilityTrusted": 1}})",
     ": /system/accessibilityTrusted: expected true or false, found a number"},
    {R"({"system": {"screens": [[0, 0, 1440]]}})",
     ": /system/screens/0: expected 4 numbers, found 3"},
    {R"({"windows": [{"layer": 1.5}]})", ": /windows/0/layer: expected a whole number, found 1.5"},
    {R"({"applications": [{"name": "A"}]})", ": /applications/0: 'pid' is missing"},
    {R"({"applications": [{"pid": 1, "accessibility": {"title": "a"}}]})",
     ": /applications/0/accessibility/title: unknown key"},
    {R"({"processes": {"/bin/a": {"does": "something"}}})",
     ": /processes/~1bin~1a/does: expected \"nothing\""},
    {R"({"files": {"/a": {"text": "", "plist": {}}}})",
     ": /files/~1a: expected one of 'text', 'plist', 'base64' and 'directory'"},
    {R"({"end": 5, "steps": [{"at": 5, "defaults": {}}]})",
     ": /end: the scene ends before its last step happens"},
    {R"({"assertions": {"one": []}})",
     ": /assertions/one: expected a process identifier as the key"},
    {R"({"defaults": {"list": [null]}})", ": /defaults/list/0: expected a value, found null"},
    {R"({"product": {"shutdownFlush": "soon"}})",
     ": /product/shutdownFlush: expected seconds, \"never\" or null, found a text"},
    {R"({"product": {"integrations": {"success": true, "error": "no"}}})",
     ": /product/integrations: expected either 'success' or 'error'"},

    // Numbers, dates, zones
    {R"({"end": -1})", ": /end: expected a number from 0 to 100000000, found -1"},
    {R"({"end": 1e300})", ": /end: expected a number from 0 to 100000000, found 1e+300"},
    {R"({"applications": [{"pid": 99999999999}]})",
     ": /applications/0/pid: expected a whole number from 0 to 2147483647, found 99999999999"},
    {R"({"random": 18446744073709551615})",
     ": /random: expected a whole number, found 18446744073709551615"},
    {R"({"start": "2026-02-30T09:00:00Z"})",
     ": /start: expected a date such as \"2026-03-02T09:00:00Z\""},
    {R"({"defaults": {"d": {"date": "today"}}})",
     ": /defaults/d/date: expected a date such as \"2026-03-02T09:00:00Z\""},
    {R"({"timeZone": "Europe/Nowhere"})", ": /timeZone: unknown time zone 'Europe/Nowhere'"},

    // Elements
    {R"({"applications": [{"pid": 1, "accessibility": {"AXMainWindow": {"ref": "w"}}}]})",
     ": /applications/0/accessibility/AXMainWindow/ref: no element has the id 'w'"},
    {R"({"applications": [{"pid": 1, "accessibility": {"children": [{"id": "w"}, {"id": "w"}]}}]})",
     ": /applications/0/accessibility/children/1/id: duplicate id 'w'"},
    {R"({"applications": [{"pid": 1, "accessibility": {"AXValue": {"circle": 3}}}]})",
     ": /applications/0/accessibility/AXValue/circle: unknown key"},
    {R"({"applications": [{"pid": 1, "accessibility": {"AXValue": {}}}]})",
     ": /applications/0/accessibility/AXValue: expected an element or one of ref, point, size, "
     "rect, "
     "range, url, date and data"},
    {R"({"applications": [{"pid": 1, "accessibility": {"AXValue": {"data": "A"}}}]})",
     ": /applications/0/accessibility/AXValue/data: expected base64"},
    {R"({"applications": [{"pid": 1, "accessibility": {"AXValue": {"error": 0}}}]})",
     ": /applications/0/accessibility/AXValue/error: 0 is the code of success"},
    {R"({"applications": [{"pid": 1, "accessibility": {"AXValue": [{"error": -1}]}}]})",
     ": /applications/0/accessibility/AXValue/0/error: unknown key"},
    {R"({"applications": [{"pid": 1, "accessibility": {"AXValue": {"hang": 1, "value": {"hang": 1}}}}]})",
     ": /applications/0/accessibility/AXValue/value: a slow answer cannot hold another"},

    // Processes
    {R"({"applications": [{"pid": 1}, {"pid": 1}]})",
     ": /applications/1/pid: the pid 1 is already taken"},
    {R"({"frontmost": 7})", ": /frontmost: no application with the pid 7 is running"},

    // Steps
    {R"({"steps": [{"frontmost": null}]})", ": /steps/0: 'at' is missing"},
    {R"({"steps": [{"at": -1, "frontmost": null}]})",
     ": /steps/0/at: a step cannot be before the start"},
    {R"({"steps": [{"at": 1}]})", ": /steps/0: a step needs a verb beside 'at'"},
    {R"({"steps": [{"at": 1, "windows": [], "frontmost": null}]})",
     ": /steps/0: a step has one verb, found 'windows' and 'frontmost'"},
    {R"({"steps": [{"at": 1, "openMenu": false}]})",
     ": /steps/0/openMenu: expected true, found false"},
    {R"({"steps": [{"at": 1, "click": {"tag": 1}}]})", ": /steps/0/click: 'action' is missing"},
    {R"({"steps": [{"at": 1, "shortcut": {"key": "t", "modifiers": ["hyper"]}}]})",
     ": /steps/0/shortcut/modifiers/0: unknown modifier 'hyper'"},
    {R"({"steps": [{"at": 1, "opnMenu": true}]})", ": /steps/0/opnMenu: unknown step 'opnMenu'"},
    {R"({"steps": [{"at": 1, "": true}]})", ": /steps/0/: unknown step ''"},
    {R"({"steps": [{"at": 1, "requestTermination": false}]})",
     ": /steps/0/requestTermination: expected true, found false"},
    {R"({"steps": [{"at": 1, "quit": 3}]})",
     ": /steps/0/quit: no application with the pid 3 is running"},
    // In order of time, not of the file: at 2 the application has quit.
    {R"({"applications": [{"pid": 3}], "steps": [{"at": 2, "frontmost": 3}, {"at": 1, "quit": 3}]})",
     ": /steps/0/frontmost: no application with the pid 3 is running"},
    {R"({"steps": [{"at": 1, "set": {"element": "w", "attributes": {}}}]})",
     ": /steps/0/set/element: no element has the id 'w'"},
    {R"({"applications": [{"pid": 3, "accessibility": null}],
         "steps": [{"at": 1, "set": {"element": 3, "attributes": {}}}]})",
     ": /steps/0/set/element: the application with the pid 3 has no element"},
    {R"({"applications": [{"pid": 3}], "steps": [{"at": 1, "launch": {"pid": 3}}]})",
     ": /steps/0/launch/pid: the pid 3 is already taken"},
};

std::string messageOf(std::string_view text) {
  const auto loaded = loadSceneText(text, "FILE");
  const auto* error = std::get_if<SceneError>(&loaded);
  return error ? error->message : "no error";
}

TEST(SceneErrorTest, NamesPlaceAndReason) {
  for (const Row& row : rows) {
    const std::string message = messageOf(row.scene);
    const std::string expected = std::string("FILE") + row.message;
    const std::size_t open = expected.find("…");  // any reason, but one
    EXPECT_EQ(message.substr(0, open), expected.substr(0, open)) << row.scene;
    EXPECT_TRUE(open == std::string::npos || message.size() > open) << row.scene;
  }
}

TEST(SceneErrorTest, BoundsTheDepth) {
  const std::string deep = std::string(100000, '[');
  EXPECT_EQ(messageOf(deep), "FILE: nested more than 256 levels deep");
}

TEST(SceneErrorTest, FilesThatCannotBeRead) {
  for (const char* path : {"/nowhere/scene.json", "/tmp"}) {
    const auto loaded = loadScene(path);
    ASSERT_TRUE(std::holds_alternative<SceneError>(loaded));
    EXPECT_TRUE(std::get<SceneError>(loaded).message.starts_with(std::string(path) + ": "))
        << std::get<SceneError>(loaded).message;
  }
}

// What looks odd and is allowed.
TEST(SceneErrorTest, AcceptsWhatIsDocumented) {
  const char* scenes[] = {
      "// a comment\n{/* and another */}",
      R"({"bundle": {"build": null}, "frontmost": null, "suites": {"com.example.x": null}})",
      R"({"installed": [{"bundleIdentifier": "com.example.x", "path": "/Applications/X.app"}]})",
      R"({"product": {"shutdownFlush": null, "somethingNew": {"deep": [1, "a"]}}})",
      // An application that comes back may bring its elements anew.
      R"({"applications": [{"pid": 1, "accessibility": {"id": "a"}}], "steps": [{"at": 1, "quit": 1},
          {"at": 2, "launch": {"pid": 1, "accessibility": {"id": "a", "AXMainWindow": {"ref": "b"},
           "children": [{"id": "b"}]}}}]})",
  };
  for (const char* scene : scenes) {
    EXPECT_EQ(messageOf(scene), "no error") << scene;
  }
}

}  // namespace
}  // namespace kestro
