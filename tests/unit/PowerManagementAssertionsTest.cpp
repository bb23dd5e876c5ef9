// How assertions are judged: which count, for whom, and in which direction.
#include "calls/PowerManagementAssertions.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include "SceneProcess.h"

namespace kestro {
namespace {

// A scene with one process's assertions, at 12:00.
std::string sceneWith(std::string_view assertions, std::string_view preferences = "{}") {
  return fmt::format(
      R"json({{"start": "2026-03-02T12:00:00Z", "helperPreferences": {}, "assertions": {{"70": [{}]}}, "applications": [
        {{"pid": 70, "bundleIdentifier": "com.apple.audiod", "name": "audiod", "executable": "/usr/audiod"}},
        {{"pid": 1234, "bundleIdentifier": "com.example.talk", "name": "\u200eTalk Helper (Renderer)", "executable": "/opt/talk"}}]}})json",
      preferences, assertions);
}

// What a snapshot says of processes: in, out, both, then the meeting-related ones, a star for those
// recorded separately.
std::string summary(const PowerManagementAssertions& snapshot) {
  std::string meetings;
  for (const auto& application : snapshot.appsWithMeetingRelatedPMAssertions) {
    meetings +=
        fmt::format(" {}{}", application.pid,
                    application.audioInAndOutAssertionsHaveBeenRecordedSeparately ? "*" : "");
  }
  return fmt::format("{} in {} out {} both {}:{}", snapshot.assertions.size(),
                     fmt::join(snapshot.pidsOfAppsWithAudioInAssertion, ","),
                     fmt::join(snapshot.pidsOfAppsWithAudioOutAssertion, ","),
                     fmt::join(snapshot.pidsOfAppsWithBothAssertions, ","), meetings);
}

// An assertion that is held for process 1234, but for what the fields say.
std::string assertion(std::string_view fields) {
  std::string text(fields);
  const std::pair<std::string_view, std::string_view> usual[]{
      {"AssertLevel", "255"},
      {"AssertType", R"("PreventUserIdleSystemSleep")"},
      {"AssertionOnBehalfOfPID", "1234"}};
  for (const auto& [key, value] : usual) {
    if (fields.find(fmt::format("\"{}\"", key)) != std::string_view::npos) continue;
    text = fmt::format(R"("{}": {}, {})", key, value, text);
  }
  return "{" + text + "}";
}

TEST(PowerManagementAssertions, judgesEachAssertion) {
  struct {
    const char* fields;  // after those that every held assertion has
    const char* expected;
  } const cases[] = {
      {R"("ResourcesUsed": ["audio-out"])", "1 in  out 1234 both :"},
      {R"("ResourcesUsed": ["BuiltInMicrophoneDevice", "other"])", "1 in 1234 out  both :"},
      {R"("ResourcesUsed": ["audio-in", "BuiltInSpeakerDevice"])", "1 in  out  both 1234: 1234"},
      {R"("ResourcesUsed": ["display"])", "1 in  out  both :"},
      {R"("ResourcesUsed": ["audio-in", 3])", "1 in  out  both :"},
      {R"("ResourcesUsed": "audio-in")", "1 in  out  both :"},
      {R"("AssertName": "Now On A Call")", "1 in 1234 out 1234 both : 1234*"},
      {R"("AssertName": "Call in progress", "ResourcesUsed": ["audio-in", "audio-out"])",
       "1 in 1234 out 1234 both : 1234*"},
      {R"("AssertName": "WebRTC has active PeerConnections")", "1 in  out  both :"},
      {R"("AssertName": "com.USBAudio", "ResourcesUsed": ["audio-in"])", "1 in 1234 out  both :"},
      {R"("AssertStartWhen": {"date": "2026-03-02T08:00:00.001Z"})", "1 in  out  both :"},
      {R"("AssertStartWhen": {"date": "2026-03-02T08:00:00Z"})", "0 in  out  both :"},
      {R"("AssertStartWhen": "yesterday")", "1 in  out  both :"},
      {R"("AssertLevel": 254)", "0 in  out  both :"},
      {R"("AssertLevel": "255")", "0 in  out  both :"},
      {R"("AssertType": "NoIdleSleepAssertion")", "0 in  out  both :"},
      {R"("AssertType": 5, "AssertionTrueType": "PreventUserIdleDisplaySleep")",
       "1 in  out  both :"},
      {R"("AssertionOnBehalfOfPID": "1234", "ResourcesUsed": ["audio-in"])", "1 in 70 out  both :"},
      {R"("AssertionOnBehalfOfPID": 4294968530, "ResourcesUsed": ["audio-in"])",
       "1 in 70 out  both :"},
  };
  for (const auto& [fields, expected] : cases) {
    SceneProcess scene(sceneWith(assertion(fields)));
    EXPECT_EQ(summary(PowerManagementAssertions::current(scene.process())), expected) << fields;
  }
}

TEST(PowerManagementAssertions, followsTheSettings) {
  struct {
    const char* preferences;
    const char* fields;
    const char* expected;
  } const cases[] = {
      {R"({"PowerManagementAssertions_suppressUSBAudioDevices": true})",
       R"("AssertName": "com.USBAudio", "ResourcesUsed": ["audio-in"])", "0 in  out  both :"},
      {R"({"PowerManagementAssertions_suppressUSBAudioDevices": true})",
       R"("AssertName": "com.usbaudio", "ResourcesUsed": ["audio-in"])", "1 in 1234 out  both :"},
      {R"({"PowerManagementAssertions_treatWebRTCLikeAudioInAndOutAssertions": true})",
       R"("AssertName": "WebRTC has active PeerConnections")", "1 in 1234 out 1234 both : 1234*"},
      {R"({"PowerManagementAssertions_treatOnACallLikeAudioInAndOutAssertions": false})",
       R"("AssertName": "On a call", "ResourcesUsed": ["audio-in", "audio-out"])",
       "1 in  out  both 1234: 1234"},
      {R"({"RunningCallDetector_maximumPMAssertionAge": 60})",
       R"("AssertStartWhen": {"date": "2026-03-02T11:59:00Z"})", "0 in  out  both :"},
      // A number given as a text counts; a text without one leaves the four hours.
      {R"({"RunningCallDetector_maximumPMAssertionAge": "60"})",
       R"("AssertStartWhen": {"date": "2026-03-02T11:59:00Z"})", "0 in  out  both :"},
      {R"({"RunningCallDetector_maximumPMAssertionAge": "long"})",
       R"("AssertStartWhen": {"date": "2026-03-02T11:59:00Z"})", "1 in  out  both :"},
  };
  for (const auto& [preferences, fields, expected] : cases) {
    SceneProcess scene(sceneWith(assertion(fields), preferences));
    EXPECT_EQ(summary(PowerManagementAssertions::current(scene.process())), expected) << fields;
  }
}

TEST(PowerManagementAssertions, combinesTheDirectionsOfAProcess) {
  const auto audio = [](std::string_view resources) {
    return assertion(fmt::format(R"("ResourcesUsed": [{}])", resources));
  };
  SceneProcess separate(sceneWith(audio(R"("audio-in")") + ", " + audio(R"("audio-out")")));
  const auto snapshot = PowerManagementAssertions::current(separate.process());
  EXPECT_EQ(summary(snapshot), "2 in 1234 out 1234 both : 1234*");
  const auto& application = snapshot.appsWithMeetingRelatedPMAssertions.at(0);
  EXPECT_EQ(application.applicationName, "Talk");
  EXPECT_EQ(application.bundleIdentifier, "com.example.talk");

  SceneProcess mixed(
      sceneWith(audio(R"("audio-in")") + ", " + audio(R"("audio-in", "audio-out")")));
  EXPECT_EQ(summary(PowerManagementAssertions::current(mixed.process())),
            "2 in 1234 out  both 1234: 1234*");
}

TEST(PowerManagementAssertions, findsTheApplicationAroundAProcess) {
  SceneProcess scene(
      R"json({"assertions": {"5": [{"AssertLevel": 255, "AssertType": "PreventUserIdleSystemSleep", "ResourcesUsed": ["audio-in", "audio-out"]}],
      "6": [{"AssertLevel": 255, "AssertType": "PreventUserIdleSystemSleep", "ResourcesUsed": ["audio-in", "audio-out"]}],
      "7": [{"AssertLevel": 255, "AssertType": "PreventUserIdleSystemSleep", "ResourcesUsed": ["audio-in", "audio-out"]}]},
    "files": {"/Apps/Talk.app/Contents/Helpers/Inner.app/Contents/Info.plist": {"plist": {"CFBundleIdentifier": "com.example.inner", "CFBundleName": "\u200fInner Helper"}}},
    "installed": [{"bundleIdentifier": "com.example.outer", "name": "Outer", "path": "/Apps/Outer.app"}],
    "applications": [
      {"pid": 5, "executable": "/Apps/Talk.app/Contents/Helpers/Inner.app/Contents/inner"},
      {"pid": 6, "name": "Own name", "executable": "/Apps/Outer.app/Contents/helper"},
      {"pid": 7, "name": "Nowhere Helper (Renderer)", "executable": "/usr/bin/nowhere"}]})json");
  const auto snapshot = PowerManagementAssertions::current(scene.process());
  std::string found;
  for (const auto& application : snapshot.appsWithMeetingRelatedPMAssertions) {
    found += fmt::format("{} {}; ", application.bundleIdentifier.value_or("(nil)"),
                         application.applicationName.value_or("(nil)"));
  }
  EXPECT_EQ(found, "com.example.inner Inner; com.example.outer Own name; (nil) Nowhere; ");
}

TEST(PowerManagementAssertions, dumpsWhatItSaw) {
  SceneProcess scene(sceneWith(assertion(
      R"("AssertName": "Talk \"now\"", "AssertStartWhen": {"date": "2026-03-02T11:00:00Z"}, "ResourcesUsed": ["b", "audio-in"])")));
  std::string dump;
  const auto snapshot = PowerManagementAssertions::current(
      scene.process(), [&](std::string_view line) { dump.append(line).append("\n"); });
  EXPECT_EQ(dump, R"(PowerManagementAssertions.pmAssertionsDictionary:
{
    70 = (
        {
            AssertionOnBehalfOfPID = 1234;
            AssertType = PreventUserIdleSystemSleep;
            AssertLevel = 255;
            AssertName = "Talk \"now\"";
            AssertStartWhen = "2026-03-02 11:00:00 +0000";
            ResourcesUsed = (
                b,
                audio-in
            );
        }
    );
}

PowerManagementAssertions
	assertions:
		Assertion(pid: 1234, type: PreventUserIdleSystemSleep, name: Talk "now", startedAt: 2026-03-02 11:00:00 +0000, resourcesUsed: ["audio-in", "b"])
	pidsOfAppsWithAudioOutAssertion: []
	pidsOfAppsWithAudioInAssertion: [1234]
	pidsOfAppsWithBothAssertions: []
	appsWithMeetingRelatedPMAssertions:


Info for *all* processes found in the assertions dictionary:

PID: 70
bundleIdentifier: com.apple.audiod
localizedName: audiod
executableURL: /usr/audiod
alternativeBundleIdentifier: (nil)
alternativeLocalizedName: (nil)

PID: 1234
bundleIdentifier: com.example.talk
localizedName: )"
                  "\u200e"
                  R"(Talk Helper (Renderer)
executableURL: /opt/talk
alternativeBundleIdentifier: (nil)
alternativeLocalizedName: (nil)

)");
  EXPECT_EQ(snapshot.assertions.size(), 1u);

  SceneProcess failing(R"({"assertions": {"error": -536870206}})");
  std::string nothing;
  PowerManagementAssertions::current(failing.process(),
                                     [&](std::string_view line) { nothing.append(line); });
  EXPECT_EQ(nothing, "");
}

TEST(PowerManagementAssertions, dumpsAHelperProcessAndItsApplication) {
  SceneProcess scene(
      R"json({"assertions": {"5": [
        {"AssertLevel": 255, "AssertType": "NoIdleSleepAssertion", "AssertionTrueType": "PreventUserIdleDisplaySleep", "ResourcesUsed": ["audio-in"], "Process Name": "talkd"},
        {"AssertLevel": 255, "AssertType": "PreventUserIdleSystemSleep", "ResourcesUsed": ["audio-out"]}]},
    "installed": [{"bundleIdentifier": "com.example.talk", "name": "\u200eTalk", "path": "/Apps/Talk.app"}],
    "applications": [{"pid": 5, "executable": "/Apps/Talk.app/Contents/MacOS/helper"}]})json");
  std::string dump;
  PowerManagementAssertions::current(
      scene.process(), [&](std::string_view line) { dump.append(line).append("\n"); });
  EXPECT_EQ(dump.substr(dump.find("\nPowerManagementAssertions\n")),
            R"(
PowerManagementAssertions
	assertions:
		Assertion(pid: 5, processName: talkd, type: NoIdleSleepAssertion, resourcesUsed: ["audio-in"])
		Assertion(pid: 5, type: PreventUserIdleSystemSleep, resourcesUsed: ["audio-out"])
	pidsOfAppsWithAudioOutAssertion: [5]
	pidsOfAppsWithAudioInAssertion: [5]
	pidsOfAppsWithBothAssertions: []
	appsWithMeetingRelatedPMAssertions:
		PIDAndRunningApplication(pid: 5, applicationName: Talk, bundleIdentifier: com.example.talk, application: <NSRunningApplication: ((null) - 5)>, audioInAndOutSeparate: true)

Info for *all* processes found in the assertions dictionary:

PID: 5
bundleIdentifier: (nil)
localizedName: (nil)
executableURL: /Apps/Talk.app/Contents/MacOS/helper
alternativeBundleIdentifier: com.example.talk
alternativeLocalizedName: Talk

)");
}

TEST(PowerManagementAssertions, dumpsUnaskedWhereTheStandardDomainSaysSo) {
  const std::pair<const char*, bool> cases[]{
      {R"({"defaults": {"PowerManagementAssertions_dumpRecordedAssertions": true}})", true},
      {R"({"helperPreferences": {"PowerManagementAssertions_dumpRecordedAssertions": true}})",
       false},
      {"{}", false},
  };
  for (const auto& [text, isDumped] : cases) {
    SceneProcess scene(text);
    PowerManagementAssertions::current(scene.process());
    const auto lines = scene.eventsOfKind("print");
    EXPECT_EQ(!lines.empty(), isDumped) << text;
    PowerManagementAssertions::current(scene.process(), [](std::string_view) {});
    EXPECT_EQ(scene.eventsOfKind("print").size(), lines.size()) << text;  // a sink gets it instead
  }
}

}  // namespace
}  // namespace kestro
