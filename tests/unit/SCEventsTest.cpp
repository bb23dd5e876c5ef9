#include "fsevents/SCEvents.h"

#include <gtest/gtest.h>

#include "FakePlatform.h"
#include "platform/Process.h"

namespace kestro {
namespace {

class SCEventsTest : public testing::Test, public SCEventListenerProtocol {
 protected:
  SCEventsTest() {
    watcher_.setDelegate(this);
    watcher_.startWatchingPaths({"/Apps"});
  }
  void pathWatcherEventOccurred(SCEvents& watcher, const SCEvent& event) override {
    seen_ += event.eventPath + " ";
    lastAtDelivery_ = watcher.lastEvent() ? watcher.lastEvent()->eventPath : "none";
    if (stopsAtFirst_) watcher.stopWatchingPaths();
  }
  // What the listener saw of one delivery of these paths.
  std::string delivered(const std::vector<std::string>& paths) {
    seen_.clear();
    std::vector<FileEvent> events;
    events.reserve(paths.size());
    for (const std::string& path : paths) {
      events.push_back({path, 7, static_cast<std::uint64_t>(events.size()) + 1});
    }
    const auto deliver = fake_.fileEvents.deliver;
    deliver(events);
    return seen_;
  }

  fakes::FakePlatform fake_;
  Process process_{fake_.platform};
  SCEvents& watcher_ = SCEvents::sharedPathWatcher(process_);
  std::string seen_, lastAtDelivery_;
  bool stopsAtFirst_ = false;
};

TEST_F(SCEventsTest, judgesEachEventByItself) {
  struct {
    std::vector<std::string> excluded;
    bool subDirectories;
    std::vector<std::string> paths;
    const char* seen;
  } const cases[] = {
      {{}, true, {"/x/y/", "/x"}, "/x/y /x "},
      {{"/a/b"}, true, {"/a/b", "/a/c", "/a/d"}, "/a/c /a/d "},
      {{"/a/b"}, true, {"/a/bc", "/a/b/c", "/a"}, "/a "},
      {{"/a/b"}, false, {"/a/bc", "/a/b/c", "/a/b", "/a/b/"}, "/a/bc /a/b/c /a/b "},
      {{}, true, {"//", "/"}, "/  "},
      {{}, true, {}, ""},
      {{""}, true, {"/x", ""}, "/x  "},
  };
  for (const auto& [excluded, subDirectories, paths, seen] : cases) {
    watcher_.setExcludedPaths(excluded);
    watcher_.setIgnoreEventsFromSubDirs(subDirectories);
    EXPECT_EQ(delivered(paths), seen) << paths.size() << " " << seen;
  }
}

TEST_F(SCEventsTest, lastEventIsThatOfADeliveryWhoseLastEventCounts) {
  fake_.runLoop.advance(Seconds(5));
  delivered({"/a", "/b/"});
  EXPECT_EQ(lastAtDelivery_, "none") << "not before the listener has seen it";
  ASSERT_TRUE(watcher_.lastEvent());
  EXPECT_EQ(watcher_.lastEvent()->eventPath, "/b");
  EXPECT_EQ(watcher_.lastEvent()->eventId, 2U);
  EXPECT_EQ(watcher_.lastEvent()->eventFlag, 7U);
  EXPECT_EQ(watcher_.lastEvent()->eventDate, fake_.runLoop.now());
  watcher_.setExcludedPaths({"/c"});
  delivered({"/d", "/c"});
  delivered({});
  EXPECT_EQ(watcher_.lastEvent()->eventPath, "/b");
  watcher_.setDelegate(nullptr);
  delivered({"/e"});
  EXPECT_EQ(watcher_.lastEvent()->eventPath, "/e");
}

TEST_F(SCEventsTest, startsAndStopsOneStream) {
  EXPECT_EQ(&SCEvents::sharedPathWatcher(process_), &watcher_);
  EXPECT_FALSE(watcher_.startWatchingPaths({"/Other"}));
  EXPECT_EQ(*watcher_.watchedPaths(), std::vector<std::string>{"/Apps"});
  EXPECT_EQ(watcher_.streamDescription(), "manual");
  EXPECT_TRUE(watcher_.flushEventStreamSync() && watcher_.flushEventStreamAsync());
  EXPECT_EQ(fake_.fileEvents.flushes, 2);

  EXPECT_TRUE(watcher_.stopWatchingPaths());
  EXPECT_EQ(fake_.fileEvents.streams, 0);
  EXPECT_FALSE(watcher_.stopWatchingPaths() || watcher_.flushEventStreamSync() ||
               watcher_.flushEventStreamAsync() || watcher_.startWatchingPaths({}));
  EXPECT_EQ(watcher_.streamDescription(),
            "The event stream is not running. Start it by calling: startWatchingPaths:");
  EXPECT_TRUE(watcher_.startWatchingPaths({"/Other", "/Apps"}));
  watcher_.setExcludedPaths({"/x"});
  EXPECT_EQ(
      watcher_.description(),
      "<SCEvents { watchedPaths = (\n    /Other,\n    /Apps\n), excludedPaths = (\n    /x\n) } >");
  EXPECT_EQ(SCEvents(process_).description(),
            "<SCEvents { watchedPaths = (null), excludedPaths = (null) } >");
  EXPECT_EQ((SCEvent{~std::uint64_t{0}, Date(), "/x", 1U << 31U}).description(),
            "<SCEvent { eventId = -1, eventPath = /x, eventFlag = 2147483648 } >");
  EXPECT_EQ((SCEvent{7, Date(), "/x", 256}).description(),
            "<SCEvent { eventId = 7, eventPath = /x, eventFlag = 256 } >");
}

TEST_F(SCEventsTest, aListenerMayStopTheWatcher) {
  stopsAtFirst_ = true;
  EXPECT_EQ(delivered({"/a", "/b"}), "/a /b ");
  EXPECT_FALSE(watcher_.isWatchingPaths());
}

}  // namespace
}  // namespace kestro
