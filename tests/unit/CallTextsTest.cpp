// What calls are called: the pure halves of call detection, a table each.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "FakePlatform.h"
#include "calls/BrowserCalls.h"
#include "calls/CallMetadata.h"
#include "calls/CallPropertiesCoding.h"
#include "calls/CallSettings.h"
#include "calls/MeetingTitles.h"
#include "platform/Process.h"
#include "product/KestroDatabase.h"

namespace kestro {
namespace {

class CallTexts : public testing::Test {
 protected:
  void prefer(const char* setting, bool value) {
    fake_.defaults.product(ProductStore::helperPreferences)
        .set(std::string("RunningCallDetector_") + setting, value);
  }
  fakes::FakePlatform fake_;
  Process process_{fake_.platform};
};

TEST_F(CallTexts, effectiveServiceNameAndTitle) {
  struct {
    bool alwaysSeparate, separateIfUnknown, prefix;
    CallMetadata metadata;
    const char* service;
    const char* title;
  } const cases[] = {
      {false, true, false, {"Zoom", "zoom.us", {}, false}, "Zoom", "Zoom call"},
      {false, true, false, {"Zoom", "zoom.us", "Weekly sync", false}, "Zoom", "Weekly sync"},
      {false,
       true,
       true,
       {"Zoom", "zoom.us", "Weekly sync", false},
       "Zoom",
       "Zoom call: Weekly sync"},
      {false, true, true, {"Zoom", "zoom.us", "", false}, "Zoom", "Zoom call"},
      {true, true, false, {"Zoom", "zoom.us", "Weekly sync", false}, "-", "-"},
      {true, true, false, {"Zoom", "zoom.us", {}, true}, "Zoom", "Zoom call"},
      {false, true, false, {{}, "Talk", {}, false}, "-", "-"},
      {false, true, false, {{}, "Talk", {}, true}, "Talk", "Talk call"},
      {false, false, false, {{}, "Talk", {}, false}, "Talk", "Talk call"},
      {false, false, false, {{}, {}, "Weekly sync", true}, "-", "-"},
  };
  for (const auto& [always, ifUnknown, prefix, metadata, service, title] : cases) {
    prefer("callDetectionAlwaysRequiresSeparateAudioAssertions", always);
    prefer("callDetectionRequiresSeparateAudioAssertionsIfServiceNameUnknown", ifUnknown);
    prefer("includeServiceNamePrefixInCallTaskTitle", prefix);
    Process process(fake_.platform);
    EXPECT_EQ(metadata.effectiveServiceName(process).value_or("-"), service);
    EXPECT_EQ(metadata.timeEntryTitle(process).value_or("-"), title);
  }
}

TEST_F(CallTexts, thePrefixIsReadAnewAndTheOthersOnce) {
  const CallMetadata metadata{"Zoom", {}, "Sync", false};
  EXPECT_EQ(metadata.timeEntryTitle(process_), "Sync");
  prefer("includeServiceNamePrefixInCallTaskTitle", true);
  prefer("callDetectionAlwaysRequiresSeparateAudioAssertions", true);
  EXPECT_EQ(metadata.timeEntryTitle(process_), "Zoom call: Sync");
}

TEST_F(CallTexts, browserPageTitle) {
  struct {
    const char *title, *name, *identifier, *expected;
  } const cases[] = {
      {"Meet - Sync – Google Chrome – Work", "Google Chrome", "com.google.Chrome", "Meet - Sync"},
      {"Meet - Sync - Google Chrome", "Google Chrome", "com.google.Chrome", "Meet - Sync"},
      {"Sync 🔊 – Work", "Chromium", "org.chromium.Chromium", "Sync – Work"},
      {"Work – Sync – Notes", "Safari", "com.apple.Safari", "Sync – Notes"},
      {"Work – Sync", "Web", "com.apple.WebKit.GPU", "Sync"},
      {"Sync", "Safari", "com.apple.Safari", "Sync"},
      {"Google Chrome", "Google Chrome", "com.google.Chrome", "(nil)"},
  };
  for (const auto& [title, name, identifier, expected] : cases) {
    EXPECT_EQ(browserPageTitle(title, name, identifier).value_or("(nil)"), expected) << title;
  }
  EXPECT_EQ(browserPageTitle(std::nullopt, "Safari", "com.apple.Safari"), std::nullopt);
}

TEST_F(CallTexts, meetingTitles) {
  const MeetingTitles titles(process_);
  const std::pair<const char*, const char*> slack[]{
      {"Huddle | harbour | 1:02", "(nil)"}, {"Huddle | harbour | 01:02", "harbour"},
      {"a | b | c | 12:01:02", "c"},        {"Huddle | harbour | 1:02:03", "harbour"},
      {"harbour | 01:02", "(nil)"},         {"Huddle | harbour | 01:02 ", "(nil)"},
  };
  for (const auto& [title, expected] : slack) {
    EXPECT_EQ(titles.slackTitle({"general", title}).value_or("(nil)"), expected) << title;
  }
  const std::pair<const char*, const char*> teams[]{
      {"Chat | Mara Lind (Guest) | Microsoft Teams", "Mara Lind"},
      {"Weekly sync | Microsoft Teams", "Weekly sync"},
      {"Microsoft Teams", "(nil)"},
      {" | Microsoft Teams", "(nil)"},
      {"Chat", "(nil)"},
  };
  for (const auto& [title, expected] : teams) {
    EXPECT_EQ(titles.teamsTitle(std::string(title)).value_or("(nil)"), expected) << title;
  }
  const std::pair<std::vector<std::string>, const char*> banners[]{
      {{"Mara Lind", "12:34"}, "Mara Lind"}, {{"Mara Lind", "1:02:34 h"}, "Mara Lind"},
      {{"Mara Lind", "at 12:34"}, "(nil)"},  {{"2:34"}, "2:34"},
      {{"Mara Lind", "12:345"}, "(nil)"},
  };
  for (const auto& [texts, expected] : banners) {
    EXPECT_EQ(titles.bannerTitle(texts).value_or("(nil)"), expected) << texts.back();
  }
  EXPECT_EQ(faceTimeWindowTitle({"FaceTime", "Two words", "Three words here"}), "Three words here");
}

TEST_F(CallTexts, callPropertiesSurviveCoding) {
  const CallProperties calls[]{
      {Date(std::chrono::milliseconds(1'772'442'000'250)),
       Date(std::chrono::seconds(1'772'443'800)),
       {"Zoom", "zoom.us", "Weekly “sync”", true}},
      {Date(std::chrono::seconds(0)), Date(std::chrono::seconds(1)), {{}, {}, {}, false}},
  };
  for (const CallProperties& call : calls) {
    EXPECT_EQ(decodedCallProperties(encodedCallProperties(call)), call);
  }
  const auto decoded = [](std::string_view text) {
    return decodedCallProperties(Data(text.begin(), text.end())).has_value();
  };
  const std::string flag = R"("audioInAndOutAssertionsHaveBeenRecordedSeparately": true)";
  const auto call = [](std::string_view dates, std::string_view metadata) {
    return fmt::format(R"({{{}, "metadata": {{{}}}}})", dates, metadata);
  };
  const char* dates = R"("startedAt": 1, "lastSeen": 2)";
  EXPECT_TRUE(decoded(call(dates, flag)));
  EXPECT_TRUE(decoded(call(dates, flag + R"(, "appName": null, "other": 1)")));
  EXPECT_FALSE(decoded(call(dates, "")));
  EXPECT_FALSE(decoded(call(dates, flag + R"(, "appName": 1)")));
  EXPECT_FALSE(decoded(call(R"("startedAt": 1)", flag)));
  EXPECT_FALSE(decoded(call(R"("startedAt": 1, "lastSeen": "2")", flag)));
  EXPECT_FALSE(decoded(call(R"("startedAt": 1, "lastSeen": 1e300)", flag)));
  EXPECT_FALSE(decoded("[]"));
  EXPECT_FALSE(decoded(""));
  EXPECT_FALSE(decoded("\xff\xfe{"));
}

TEST(DurationFormatter, compact) {
  const std::pair<double, const char*> cases[]{
      {-5, "0 s"},           {0, "0 s"},
      {59.9, "59 s"},        {60, "1 min"},
      {1799, "29 min"},      {3600, "1 h"},
      {3659, "1 h"},         {3660, "1 h 1 min"},
      {90061, "25 h 1 min"}, {1e300, "277777777 h 46 min"},
  };
  for (const auto& [seconds, expected] : cases) {
    EXPECT_EQ(DurationFormatter::format(Seconds(seconds), DurationFormatter::Style::compact),
              expected);
  }
}

TEST(AnalyticsWrapper, roundNumberToLogScale) {
  const std::pair<double, double> cases[]{{0, 0},       {7, 7},        {14, 10},    {96, 100},
                                          {1754, 2000}, {0.034, 0.03}, {-250, -300}};
  for (const auto& [number, expected] : cases) {
    EXPECT_NEAR(AnalyticsWrapper::roundNumberToLogScale(number), expected, 1e-12) << number;
  }
}

}  // namespace
}  // namespace kestro
