// The scripted desktop behind the platform interfaces.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "scene/SceneDesktop.h"
#include "transcript/JsonLinesWriter.h"

namespace kestro {
namespace {

using Texts = std::vector<std::string>;

// A scene with its transcript.
struct Fixture {
  explicit Fixture(std::string_view text, Texts arguments = {}) {
    DesktopOptions options;
    options.arguments = std::move(arguments);
    options.transcriptWriter = std::make_unique<JsonLinesWriter>(transcript);
    auto loaded = loadSceneText(text, "scene");
    if (const auto* error = std::get_if<SceneError>(&loaded)) {
      ADD_FAILURE() << error->message;
      loaded = Scene();
    }
    desktop = makeSceneDesktop(std::get<Scene>(std::move(loaded)), std::move(options));
  }

  Platform& platform() { return desktop->platform(); }
  Accessibility& accessibility() { return platform().accessibility; }
  UIElement element(std::string_view id) { return desktop->element(id).value(); }
  double time() { return Seconds(platform().clock.now() - desktop->scene().start).count(); }

  std::ostringstream transcript;
  std::unique_ptr<SceneDesktop> desktop;
};

std::string show(const AttributeValue& value);

struct Show {
  std::string operator()(const std::string& text) { return text; }
  std::string operator()(bool flag) { return flag ? "true" : "false"; }
  std::string operator()(std::int64_t number) { return std::to_string(number); }
  std::string operator()(double number) { return "real " + std::to_string(number); }
  std::string operator()(const WebAddress& address) { return "<" + address.absoluteString + ">"; }
  std::string operator()(Date date) {
    return "date " + std::to_string(std::chrono::system_clock::to_time_t(date));
  }
  std::string operator()(const Data& data) { return std::to_string(data.size()) + " bytes"; }
  std::string operator()(Point point) { return "point " + numbers({point.x, point.y}); }
  std::string operator()(Size size) { return "size " + numbers({size.width, size.height}); }
  std::string operator()(Rect rect) {
    return "rect " + numbers({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
  }
  std::string operator()(Range range) {
    return "range " + std::to_string(range.location) + "+" + std::to_string(range.length);
  }
  std::string operator()(const UIElement& element) {
    return "@" + element.reference().description();
  }
  std::string operator()(const AttributeValue::List& list) {
    std::string text;
    for (const AttributeValue& member : list) {
      text += (text.empty() ? "" : ", ") + show(member);
    }
    return "[" + text + "]";
  }
  static std::string numbers(const std::vector<double>& values) {
    std::ostringstream text;
    for (const double value : values) {
      text << (text.str().empty() ? "" : " ") << value;
    }
    return text.str();
  }
};

std::string show(const AttributeValue& value) {
  return std::visit(Show{}, value.variant());
}

template <class Value>
std::string outcome(const AccessibilityResult<Value>& result, const std::string& value) {
  if (result.value) return value;
  return "error " + std::to_string(static_cast<int>(result.error));
}

std::string read(Fixture& fixture, const UIElement& element, std::string_view attribute) {
  const auto result = fixture.accessibility().copyAttributeValue(element, attribute);
  return outcome(result, result.value ? show(*result.value) : "");
}

constexpr std::string_view editorScene = R"({
  "applications": [{"pid": 5, "name": "Editor", "accessibility": {
    "id": "app", "AXFocusedWindow": {"ref": "w"}, "AXSheet": {"AXRole": "AXSheet"},
    "AXText": "t", "AXFlag": false, "AXWhole": 3, "AXReal": 3.0, "AXNothing": null,
    "AXFails": {"error": -25204}, "AXAddress": {"url": "https://a.example/"},
    "AXDate": {"date": "1970-01-01T00:00:07Z"}, "AXData": {"data": "AAAA"},
    "AXPoint": {"point": [1, 2]}, "AXSize": {"size": [3, 4.5]}, "AXRect": {"rect": [1, 2, 3, 4]},
    "AXRange": {"range": [2, 5]}, "AXMixed": ["a", [1], {"ref": "w"}],
    "AXSlow": {"hang": 1.5, "value": "late"}, "AXSlowNothing": {"hang": 1}, "AXStuck": {"hang": 9, "value": "x"},
    "AXSlowFailure": {"hang": 0.5, "value": {"error": -25200}},
    "settable": ["AXText", "AXManual"], "actions": {"AXPress": "press"},
    "children": [
      {"AXRole": "AXMenuBar"},
      {"id": "w", "AXRole": "AXWindow", "children": [
        {"id": "group", "AXRole": "AXGroup", "children": [{"AXRole": "AXButton", "AXWindow": "own"}]}
      ]}]}},
    {"pid": 6, "accessibility": null},
    {"pid": 7}]})";

TEST(SceneDesktopTest, ValuesOfEveryKind) {
  Fixture fixture(editorScene);
  const std::pair<const char*, const char*> rows[] = {
      {"AXText", "t"},
      {"AXFlag", "false"},
      {"AXWhole", "3"},
      {"AXReal", "real 3.000000"},
      {"AXNothing", "error -25212"},
      {"AXFails", "error -25204"},
      {"AXUnknown", "error -25205"},
      {"AXAddress", "<https://a.example/>"},
      {"AXDate", "date 7"},
      {"AXData", "3 bytes"},
      {"AXPoint", "point 1 2"},
      {"AXSize", "size 3 4.5"},
      {"AXRect", "rect 1 2 3 4"},
      {"AXRange", "range 2+5"},
      {"AXMixed", "[a, [1], @w]"},
      {"AXFocusedWindow", "@w"},
      {"AXRole", "AXApplication"},
      {"AXTitle", "Editor"},
      {"AXChildren", "[@AXMenuBar 0, @w]"},
      {"AXWindows", "[@w]"},
      {"AXParent", "error -25205"},
      {"AXSheet", "@AXSheet AXSheet"},
  };
  for (const auto& [attribute, expected] : rows) {
    EXPECT_EQ(read(fixture, fixture.element("app"), attribute), expected) << attribute;
  }
  EXPECT_EQ(fixture.accessibility().requestCount(), std::size(rows));
  EXPECT_EQ(fixture.time(), 0);
}

TEST(SceneDesktopTest, ParentAndWindowFollowFromNesting) {
  Fixture fixture(editorScene);
  const UIElement group = fixture.element("group");
  EXPECT_EQ(read(fixture, group, "AXParent"), "@w");
  EXPECT_EQ(read(fixture, group, "AXWindow"), "@w");
  EXPECT_EQ(read(fixture, fixture.element("w"), "AXParent"), "@app");
  EXPECT_EQ(read(fixture, fixture.element("w"), "AXWindow"), "error -25205");
  const auto children = fixture.accessibility().copyAttributeValue(group, "AXChildren");
  const UIElement button = *children.value->get<AttributeValue::List>()->front().get<UIElement>();
  EXPECT_EQ(button.reference().description(), "AXButton 1/0/0");
  EXPECT_EQ(read(fixture, button, "AXWindow"), "own");
  EXPECT_EQ(fixture.accessibility().copyAttributeNames(button).value,
            (Texts{"AXRole", "AXWindow", "AXParent"}));
}

TEST(SceneDesktopTest, SlowAnswersTakeVirtualTime) {
  Fixture fixture(editorScene);
  const UIElement app = fixture.element("app");
  EXPECT_EQ(read(fixture, app, "AXSlow"), "late");
  EXPECT_EQ(fixture.time(), 1.5);
  EXPECT_EQ(read(fixture, app, "AXStuck"), "error -25204");  // after the platform's own 6 s
  EXPECT_EQ(fixture.time(), 7.5);
  const UIElement systemWide = *fixture.accessibility().systemWideElement();
  EXPECT_EQ(fixture.accessibility().setMessagingTimeout(systemWide, 1),
            AccessibilityError::success);
  EXPECT_EQ(read(fixture, app, "AXSlow"), "error -25204");
  EXPECT_EQ(fixture.time(), 8.5);
  EXPECT_EQ(read(fixture, app, "AXSlowNothing"), "error -25212");  // exactly in time
  EXPECT_EQ(read(fixture, app, "AXSlowFailure"), "error -25200");
  EXPECT_EQ(fixture.time(), 10);
  fixture.accessibility().setMessagingTimeout(app, 2);
  EXPECT_EQ(read(fixture, app, "AXSlow"), "late");
  EXPECT_EQ(fixture.accessibility().setMessagingTimeout(app, -1),
            AccessibilityError::illegalArgument);
}

TEST(SceneDesktopTest, WritesAreRecordedAndTakeEffectWhenSettable) {
  Fixture fixture(editorScene);
  Accessibility& accessibility = fixture.accessibility();
  const UIElement app = fixture.element("app");
  EXPECT_EQ(accessibility.isAttributeSettable(app, "AXManual").value, true);
  EXPECT_EQ(accessibility.isAttributeSettable(app, "AXFlag").value, false);
  EXPECT_EQ(accessibility.isAttributeSettable(app, "AXNope").error,
            AccessibilityError::attributeUnsupported);
  EXPECT_EQ(accessibility.setAttributeValue(app, "AXManual", true), AccessibilityError::success);
  EXPECT_EQ(read(fixture, app, "AXManual"), "true");
  const UIElement other = *accessibility.applicationElement(7);
  EXPECT_EQ(accessibility.setAttributeValue(other, "AXManual", Point{1, 2}),
            AccessibilityError::attributeUnsupported);
  EXPECT_EQ(
      fixture.transcript.str(),
      "{\"t\":0,\"kind\":\"attribute\",\"element\":\"app\",\"attribute\":\"AXManual\","
      "\"value\":true}\n"
      "{\"t\":0,\"kind\":\"attribute\",\"element\":\"application 7\",\"attribute\":\"AXManual\","
      "\"value\":{\"point\":[1.0,2.0]}}\n");
  EXPECT_EQ(accessibility.performAction(app, "AXPress"), AccessibilityError::success);
  EXPECT_EQ(accessibility.performAction(app, "AXRaise"), AccessibilityError::actionUnsupported);
  EXPECT_FALSE(accessibility.applicationElement(6));
  EXPECT_FALSE(accessibility.applicationElement(8));
}

TEST(SceneDesktopTest, HitTestFindsTheDeepestElement) {
  Fixture fixture(R"({"applications": [{"pid": 1, "accessibility": {"id": "app", "children": [
      {"id": "back", "AXPosition": {"point": [0, 0]}, "AXSize": {"size": [100, 100]}, "children": [
        {"id": "deep", "AXPosition": {"point": [0, 0]}, "AXSize": {"size": [50, 50]}}]},
      {"id": "front", "AXPosition": {"point": [40, 40]}, "AXSize": {"size": [20, 20]}, "children": [
        {"id": "loop", "AXChildren": [{"ref": "front"}]},
        {"children": [{"id": "menu", "AXPosition": {"point": [200, 0]}, "AXSize": {"size": [9, 9]}}]}]}
      ]}},
      {"pid": 2, "accessibility": {"hitTest": {"ref": "deep"}}},
      {"pid": 3, "accessibility": {"hitTest": null, "AXPosition": {"point": [0, 0]}, "AXSize": {"size": [9, 9]}}}]})");
  struct Row {
    ProcessIdentifier process;
    float x, y;
    const char* expected;
  };
  const Row rows[] = {
      {1, 10, 10, "deep"},       {1, 45, 45, "deep"},           {1, 55, 55, "front"},
      {1, 204, 4, "menu"},       {1, 100, 100, "error -25212"}, {2, 500, 500, "deep"},
      {3, 1, 1, "error -25212"},
  };
  for (const Row& row : rows) {
    const UIElement app = *fixture.accessibility().applicationElement(row.process);
    const auto found = fixture.accessibility().copyElementAtPosition(app, row.x, row.y);
    EXPECT_EQ(outcome(found, found.value ? found.value->reference().description() : ""),
              row.expected);
  }
}

TEST(SceneDesktopTest, StepsChangeTheDesktop) {
  Fixture fixture(R"({
    "system": {"accessibilityTrusted": false},
    "defaults": {"a": 1, "b": 2}, "suites": {"closed": null, "s": {"x": 1, "y": 2}},
    "applications": [{"pid": 1, "accessibility": {"id": "old"}}], "frontmost": 1,
    "windows": [{"pid": 1}, {"pid": null, "name": null, "layer": null, "sharing": null}],
    "steps": [
      {"at": 1, "system": {"accessibilityTrusted": true}},
      {"at": 1, "set": {"element": "application 1", "attributes": {"AXTitle": "new",
         "AXChildren": [{"id": "child", "AXRole": "AXWindow"}]}}},
      {"at": 2, "quit": 1},
      {"at": 2, "defaults": {"a": null, "b": {"date": "1970-01-01T00:00:00Z"}}},
      {"at": 2, "suites": {"s": {"x": null, "z": 3}, "closed": {"k": true}}},
      {"at": 2, "windows": []},
      {"at": 3, "launch": {"pid": 1, "name": "Again", "accessibility": {"id": "new"}}}]})");
  Platform& platform = fixture.platform();
  const UIElement old = fixture.element("old");
  const auto windows = platform.windowServer.onScreenWindows();
  ASSERT_EQ(windows.size(), 2U);
  EXPECT_EQ(windows[0].layer, 0);
  EXPECT_EQ(windows[0].sharingState, 1);
  EXPECT_FALSE(windows[1].ownerProcessIdentifier || windows[1].layer || windows[1].sharingState);
  EXPECT_FALSE(platform.defaults.suite("closed"));
  EXPECT_TRUE(platform.defaults.suite("never mentioned"));
  UserDefaults* suite = platform.defaults.suite("s");

  Texts log;
  const auto timer = platform.runLoop.scheduleEvery(Seconds(1), [&] {
    const auto frontmost = platform.workspace.frontmostApplication();
    log.push_back((frontmost ? frontmost->localizedName.value_or("unnamed") : "none") + " " +
                  read(fixture, old, "AXTitle"));
  });
  platform.log.write("begin");
  EXPECT_EQ(platform.runLoop.run(), 0);
  EXPECT_EQ(log, (Texts{"unnamed new", "none error -25202", "Again error -25202"}));
  EXPECT_FALSE(platform.defaults.standard().value("a"));
  EXPECT_EQ(platform.defaults.standard().value("b"), PropertyList(Date()));
  EXPECT_FALSE(suite->value("x"));
  EXPECT_EQ(suite->integer("y"), 2);
  EXPECT_EQ(suite->integer("z"), 3);
  EXPECT_EQ(platform.defaults.suite("closed")->boolean("k"), true);
  EXPECT_TRUE(platform.windowServer.onScreenWindows().empty());
  EXPECT_NE(platform.accessibility.applicationElement(1), old);
  EXPECT_EQ(platform.accessibility.processIdentifier(old).value, 1);
  EXPECT_EQ(fixture.transcript.str(), "{\"t\":0,\"kind\":\"log\",\"text\":\"begin\"}\n");
}

TEST(SceneDesktopTest, UntrustedProcessesAreRefused) {
  Fixture fixture(R"({"system": {"accessibilityTrusted": false}, "applications": [{"pid": 1}]})");
  const UIElement app = *fixture.accessibility().applicationElement(1);
  EXPECT_EQ(read(fixture, app, "AXRole"), "error -25211");
  EXPECT_EQ(fixture.accessibility().setAttributeValue(app, "AXTitle", "x"),
            AccessibilityError::apiDisabled);
  EXPECT_EQ(fixture.transcript.str(), "");
}

TEST(SceneDesktopTest, ProgramsAndPreferencesAreRecorded) {
  Fixture fixture(R"({"suites": {"closed": null},
    "processes": {"/bin/missing": {"fails": "no such file"}, "/bin/idle": {"does": "nothing"}}})");
  ChildProcesses& programs = fixture.platform().childProcesses;
  const auto run = [&](const std::string& path, const Texts& arguments) {
    const auto result = programs.runAndWait(path, arguments);
    const auto* failure = std::get_if<LaunchFailure>(&result);
    return failure ? failure->reason : std::to_string(std::get<ExitStatus>(result).code);
  };
  EXPECT_EQ(run("/bin/missing", {}), "no such file");
  EXPECT_EQ(run("/bin/idle", {"-x"}), "0");
  EXPECT_EQ(run("/usr/bin/defaults", {"write", "d", "k", "-bool", "YES"}), "0");
  EXPECT_EQ(run("/usr/bin/defaults", {"write", "closed", "k", "-bool", "YES"}), "1");
  EXPECT_EQ(fixture.platform().defaults.suite("d")->boolean("k"), true);
  fixture.platform().defaults.suite("d")->remove("k");
  fixture.platform().defaults.product(ProductStore::helperPreferences).set("p", 1);
  EXPECT_TRUE(fixture.transcript.str().ends_with(
      "{\"t\":0,\"kind\":\"preference\",\"domain\":\"d\",\"key\":\"k\"}\n"
      "{\"t\":0,\"kind\":\"preference\",\"domain\":\"helperPreferences\",\"key\":\"p\",\"value\":1}"
      "\n"))
      << fixture.transcript.str();
}

// Notes when something happens, as "name@time".
struct Journal {
  explicit Journal(Fixture& desktop) : fixture(desktop) {}
  RunLoop::Task note(const std::string& name) {
    return [this, name] { add(name); };
  }
  void add(const std::string& name) {
    std::ostringstream entry;
    entry << name << '@' << fixture.time();
    entries.push_back(entry.str());
  }

  Fixture& fixture;
  Texts entries;
};

TEST(SceneDesktopTest, RunLoopOrder) {
  Fixture fixture(R"({"end": 5, "defaults": {"v": 0}, "steps": [
    {"at": 2, "defaults": {"v": 1}}]})");
  Journal journal(fixture);
  RunLoop& loop = fixture.platform().runLoop;
  UserDefaults& defaults = fixture.platform().defaults.standard();
  const auto every = loop.scheduleEvery(
      Seconds(1), [&] { journal.add("tick" + std::to_string(defaults.integer("v").value())); });
  const auto once = loop.scheduleAfter(Seconds(1), journal.note("once"));
  auto cancelled = loop.scheduleAfter(Seconds(1), journal.note("cancelled"));
  cancelled.reset();
  std::unique_ptr<Timer> self;
  self = loop.scheduleEvery(Seconds(1.5), [&] {
    self.reset();
    journal.add("self");
    loop.post([&] {
      journal.add("posted");
      loop.post(journal.note("nested"));
    });
  });
  loop.post(journal.note("first"));
  std::unique_ptr<Timer> late;
  loop.setTerminationHandler([&] {
    journal.add("terminate");
    late = loop.scheduleAfter(Seconds(0.5), [&] { loop.stop(4); });
  });
  EXPECT_EQ(loop.run(), 4);
  EXPECT_EQ(journal.entries,
            (Texts{"first@0", "tick0@1", "once@1", "self@1.5", "posted@1.5", "nested@1.5",
                   "tick1@2", "tick1@3", "tick1@4", "terminate@5", "tick1@5"}));
  EXPECT_EQ(fixture.time(), 5.5);
}

TEST(SceneDesktopTest, TasksThatPostEachOtherWithoutEndAreStopped) {
  Fixture fixture(R"({"end": 5})");
  RunLoop& loop = fixture.platform().runLoop;
  std::function<void()> again = [&] { loop.post(again); };
  again();
  EXPECT_EQ(loop.run(), 1);
  EXPECT_EQ(fixture.time(), 0);
}

TEST(SceneDesktopTest, WhatFellDueMeanwhileHappensBeforeLateTasks) {
  Fixture fixture(R"({"end": 7, "applications": [{"pid": 1, "accessibility":
      {"AXSlow": {"hang": 2.25}}}], "steps": [{"at": 2.5, "defaults": {"v": 1}}]})");
  Journal journal(fixture);
  RunLoop& loop = fixture.platform().runLoop;
  UserDefaults& defaults = fixture.platform().defaults.standard();
  const UIElement app = *fixture.accessibility().applicationElement(1);
  const auto sample = loop.scheduleEvery(Seconds(1), [&] {
    journal.add("sample");
    if (fixture.time() == 1) read(fixture, app, "AXSlow");
  });
  const auto before = loop.scheduleAfter(Seconds(2.25), [&] {
    journal.add(defaults.value("v") ? "after the step" : "before the step");
  });
  const auto after = loop.scheduleAfter(Seconds(2.75), [&] {
    journal.add(defaults.value("v") ? "after the step" : "before the step");
  });
  EXPECT_EQ(loop.run(), 0);
  EXPECT_EQ(journal.entries, (Texts{"sample@1", "after the step@3.25", "after the step@3.25",
                                    "sample@4", "sample@5", "sample@6"}));
}

TEST(SceneDesktopTest, SleepsLetTimePassAndDatesAreKept) {
  Fixture fixture(R"({"end": 7, "steps": [{"at": 2, "defaults": {"v": 1}}]})");
  Journal journal(fixture);
  RunLoop& loop = fixture.platform().runLoop;
  UserDefaults& defaults = fixture.platform().defaults.standard();
  const Date start = fixture.platform().clock.now();
  loop.post([&] {
    loop.sleep(Seconds(-1));
    loop.sleep(Seconds(2.5));
    journal.add(defaults.value("v") ? "after the step" : "before the step");
  });
  const auto past = loop.scheduleAt(start - std::chrono::hours(1), journal.note("past"));
  const auto date = loop.scheduleAt(start + std::chrono::seconds(2), [&] {
    journal.add(defaults.value("v") ? "after the step" : "before the step");
  });
  const auto later = loop.scheduleAt(start + std::chrono::seconds(4), journal.note("later"));
  const auto never = loop.scheduleAt(Date::max(), journal.note("never"));
  EXPECT_EQ(loop.run(), 0);
  EXPECT_EQ(journal.entries,
            (Texts{"before the step@2.5", "past@2.5", "after the step@2.5", "later@4"}));
}

TEST(SceneDesktopTest, RelaunchesThroughTheBundle) {
  Fixture listed(R"({"bundle": {"identifier": "own", "path": "/A.app"}, "applications": [
      {"pid": 1, "bundleIdentifier": "other"}, {"pid": 77, "bundleIdentifier": "own"}],
      "processes": {"/bin/sh": {"fails": "no shell"}}})");
  Platform& platform = listed.platform();
  EXPECT_EQ(platform.processIdentifier, 77);
  EXPECT_EQ(platform.relaunchCommands.opened, "/A.app");
  ChildProcesses& programs = platform.childProcesses;
  const auto failure = programs.startDetached(platform.relaunchCommands.shell, {"-c", "x"});
  EXPECT_EQ(failure ? failure->reason : "none", "no shell");
  EXPECT_FALSE(programs.startDetached(platform.relaunchCommands.opener, {}));
  EXPECT_EQ(listed.transcript.str(),
            "{\"t\":0,\"kind\":\"process\",\"path\":\"/bin/sh\",\"arguments\":[\"-c\",\"x\"]}\n"
            "{\"t\":0,\"kind\":\"process\",\"path\":\"/usr/bin/open\",\"arguments\":[]}\n");
  EXPECT_EQ(Fixture("{}").platform().processIdentifier, 501);
}

TEST(SceneDesktopTest, AHelperThatNeverEndsIsStopped) {
  Fixture fixture(R"({"end": 2})");
  RunLoop& loop = fixture.platform().runLoop;
  loop.setTerminationHandler([] {});
  EXPECT_EQ(loop.run(), 1);
  EXPECT_EQ(fixture.time(), 62);
}

TEST(SceneDesktopTest, RestartsBeginAFreshLife) {
  Fixture fixture(R"({"arguments": ["-a"], "end": 20, "steps": [
      {"at": 2, "restart": {"arguments": ["-b"]}},
      {"at": 5, "requestTermination": true}, {"at": 6, "defaults": {"v": 1}},
      {"at": 10, "restart": true}]})");
  Platform& platform = fixture.platform();
  Journal journal(fixture);
  do {
    journal.add("begin " + platform.arguments.at(0));
    // Left over from this life: must not reach the next.
    static_cast<void>(platform.runLoop.scheduleEvery(Seconds(100), journal.note("leftover")));
    const auto timer = platform.runLoop.scheduleEvery(Seconds(1.5), journal.note("tick"));
    platform.runLoop.setTerminationHandler([&] {
      journal.add("terminate");
      platform.runLoop.post(journal.note("posted"));
      platform.runLoop.stop(0);
    });
    EXPECT_EQ(platform.runLoop.run(), 0);
  } while (fixture.desktop->beginNextProcessLife());
  EXPECT_EQ(journal.entries,
            (Texts{"begin -a@0", "tick@1.5", "terminate@2", "begin -b@2", "tick@3.5", "terminate@5",
                   "begin -b@10", "tick@11.5", "tick@13", "tick@14.5", "tick@16", "tick@17.5",
                   "tick@19", "terminate@20"}));
  EXPECT_EQ(platform.defaults.standard().integer("v"), 1);  // changed while no helper ran
}

TEST(SceneDesktopTest, TimeoutsBelongToALife) {
  Fixture fixture(R"({"applications": [{"pid": 1, "accessibility":
      {"id": "app", "AXSlow": {"hang": 3, "value": "x"}}}], "steps": [{"at": 1, "restart": true}]})");
  const UIElement app = fixture.element("app");
  fixture.accessibility().setMessagingTimeout(app, 1);
  fixture.platform().runLoop.run();
  ASSERT_TRUE(fixture.desktop->beginNextProcessLife());
  EXPECT_EQ(read(fixture, app, "AXSlow"), "x");
}

TEST(SceneDesktopTest, ArgumentsAndDataDirectory) {
  std::filesystem::path directory;
  {
    Fixture fixture(R"({"arguments": ["-a"]})", {"-mine"});
    EXPECT_EQ(fixture.platform().arguments, Texts{"-mine"});
    directory = fixture.platform().dataDirectory;
    EXPECT_EQ(std::filesystem::status(directory).permissions(), std::filesystem::perms::owner_all);
  }
  EXPECT_FALSE(std::filesystem::exists(directory));
}

}  // namespace
}  // namespace kestro
