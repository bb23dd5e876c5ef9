#include <fmt/format.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "FakePlatform.h"
#include "platform/Process.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

class ScriptedExtractor final : public InfoLoggerExtractor, public InfoLoggerCallDetector {
 public:
  explicit ScriptedExtractor(fakes::EmptyAccessibility& accessibility)
      : accessibility_(accessibility) {}

  std::optional<Activity> getCurrentActivity() override {
    accessibility_.request();
    if (title == "-") return std::nullopt;
    if (title == "throw") throw std::runtime_error("a private title");
    ActivityDetails details;
    details.windowTitle = title;
    return Activity({}, details);
  }
  void callInfoExtractorFor(Activity& activity) override {
    accessibility_.request();
    activity.details.documentTitle = "document";
    if (extractorFails) throw std::runtime_error("a private title");
  }
  void updateCallStatusForActivity(Activity& activity) override {
    seenByDetector += activity.details.documentTitle.value_or("?") + ";";
  }
  bool detectsCallsWhenTrackingIsPaused() const override { return detectsWhilePaused; }
  bool hasRunningCall() const override { return false; }
  std::optional<std::string> descriptionOfRunningCalls() const override { return {}; }
  const std::set<std::string>& noAccessibilityApplicationBundleIdentifiers() override {
    return none_;
  }
  void relaunchWithDelay(Seconds, PropertyListDictionary) override {}
  const InfoLoggerAccessibilityStatsProvider& accessibilityStatsProvider() override {
    throw std::logic_error("not asked for");
  }

  std::string title = "a";
  bool extractorFails = false;
  bool detectsWhilePaused = false;
  std::string seenByDetector;

 private:
  fakes::EmptyAccessibility& accessibility_;
  std::set<std::string> none_;
};

class InfoLoggerTest : public testing::Test {
 protected:
  // The events since the last call: kind, title or operation, requests.
  std::string events() {
    std::string text;
    for (const auto& [kind, fields] : fake.transcript.events) {
      text += kind;
      for (const std::string_view key : {"operation", "windowTitle", "documentTitle"}) {
        const PropertyList* value = fields.find(key);
        if (value) text += " " + *value->get<std::string>();
      }
      const PropertyList* requests = fields.find("requests");
      if (requests) text += fmt::format(" {}", *requests->get<std::int64_t>());
      text += "\n";
    }
    fake.transcript.events.clear();
    return text;
  }
  void startTracking() {
    DatabaseWrapper::sharedInstance(process);
    logger.setInfoExtractor(&extractor);
    logger.setCallDetector(&extractor);
    logger.setShouldTrack(true);
    events();
  }

  fakes::FakePlatform fake;
  Process process{fake.platform};
  ScriptedExtractor extractor{fake.accessibility};
  InfoLogger logger{process};
};

TEST_F(InfoLoggerTest, samplesAtOnceAndThenOncePerInterval) {
  startTracking();
  EXPECT_EQ(events(), "");
  fake.runLoop.advance(Seconds(0));
  EXPECT_EQ(events(), "activity a document 2\n");
  fake.runLoop.advance(Seconds(1));
  extractor.title = "-";
  fake.runLoop.advance(Seconds(1));
  EXPECT_EQ(events(), "activity a document 2\nnoActivity\n");
  EXPECT_EQ(extractor.seenByDetector, "document;document;");
}

TEST_F(InfoLoggerTest, turningTrackingOffAndOnAgainSamplesOnce) {
  fake.productConditions.set("samplingInterval", 2.0);
  startTracking();
  logger.setShouldTrack(false);
  fake.runLoop.advance(Seconds(5));
  EXPECT_EQ(events(), "product InfoLogger setShouldTrack\n");
  logger.setShouldTrack(true);
  logger.setShouldTrack(false);
  logger.setShouldTrack(true);
  events();
  fake.runLoop.advance(Seconds(1.9));
  EXPECT_EQ(events(), "activity a document 2\n");
  fake.runLoop.advance(Seconds(0.1));
  EXPECT_EQ(events(), "activity a document 2\n");
  EXPECT_FALSE(logger.prepareForShutdown(true));
  fake.runLoop.advance(Seconds(2));
  EXPECT_EQ(events(),
            "product InfoLogger prepareForShutdownWithIsRelaunch\nactivity a document 2\n");
  EXPECT_FALSE(logger.prepareForShutdown(false));
  fake.runLoop.advance(Seconds(5));
  EXPECT_EQ(events(), "product InfoLogger prepareForShutdownWithIsRelaunch\n");
}

TEST_F(InfoLoggerTest, samplesForCallsOnlyWhileTrackingIsPaused) {
  extractor.detectsWhilePaused = true;
  startTracking();
  logger.setShouldTrack(false);
  fake.runLoop.advance(Seconds(2));
  EXPECT_EQ(extractor.seenByDetector, "document;document;");
  EXPECT_EQ(events(), "product InfoLogger setShouldTrack\n");
  logger.setShouldTrack(true);
  fake.runLoop.advance(Seconds(1));
  EXPECT_EQ(extractor.seenByDetector, "document;document;document;document;");
  logger.prepareForShutdown(false);
  fake.runLoop.advance(Seconds(5));
  EXPECT_EQ(extractor.seenByDetector, "document;document;document;document;");
}

TEST_F(InfoLoggerTest, aFailedStepCostsThatStepOnlyAndTellsNoTitle) {
  startTracking();
  extractor.extractorFails = true;
  fake.runLoop.advance(Seconds(0));
  extractor.title = "throw";
  fake.runLoop.advance(Seconds(1));
  extractor.title = "b";
  fake.runLoop.advance(Seconds(1));
  EXPECT_EQ(events(), "activity a document 2\nnoActivity\nactivity b document 2\n");
  ASSERT_EQ(fake.log.lines.size(), 1U);
  EXPECT_EQ(fake.log.lines[0].find("private"), std::string::npos);
}

TEST_F(InfoLoggerTest, silentTranscriptStaysSilent) {
  fake.transcript.isListening = false;
  startTracking();
  fake.runLoop.advance(Seconds(3));
  EXPECT_EQ(events(), "");
}

}  // namespace
}  // namespace kestro
