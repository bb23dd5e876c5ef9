// What the live desktop's tray, windows and commands make of texts and values, without a desktop.
#include <gtest/gtest.h>

#include <fstream>

#include "FakePlatform.h"
#include "control/PauseDuration.h"
#include "control/StatusText.h"
#include "linux/applications/LaunchCommand.h"
#include "linux/shell/LinuxLoginItems.h"
#include "linux/shell/MenuRows.h"
#include "linux/shell/PendingNotifications.h"
#include "linux/shell/TrayPixmap.h"
#include "linux/shell/TrayText.h"
#include "linux/windows/x11/X11Shortcuts.h"

namespace kestro {
namespace {

MenuItem itemOf(std::string action, std::string title, std::int64_t tag = 0) {
  MenuItem item;
  item.action = std::move(action);
  item.title = std::move(title);
  item.tag = tag;
  return item;
}

TEST(MenuRows, areNumberedForGood) {
  MenuRows numbering;
  Menu menu;
  menu.items = {itemOf("startTask:", "Start"), itemOf("", "Pause for…"), itemOf("quit:", "Quit")};
  menu.items[1].submenu = {itemOf("pauseTrackingFor:", "5", 300),
                           itemOf("pauseTrackingFor:", "10", 600)};
  const MenuRow before = numbering.rowsOf(menu);
  menu.items.erase(menu.items.begin());
  menu.items[0].submenu.insert(menu.items[0].submenu.begin(), itemOf("pauseTrackingFor:", "1", 60));
  const MenuRow after = numbering.rowsOf(menu);
  EXPECT_EQ(before.rows[2].number, after.rows[1].number);
  EXPECT_EQ(before.rows[1].rows[0].number, after.rows[0].rows[1].number);
  EXPECT_EQ(findMenuRow(after, before.rows[1].rows[1].number)->tag, 600);
  EXPECT_EQ(findMenuRow(after, before.rows[0].number), nullptr);
}

TEST(MenuRows, sayWhatPanelsNeed) {
  MenuItem item = itemOf("toggleAutomaticLaunch:", "A_b\x1b[1m & c");
  item.isChecked = true;
  item.isHidden = true;
  item.keyEquivalent = {"t", {ModifierKey::command, ModifierKey::control, ModifierKey::shift}};
  item.image = "pause.circle";
  const MenuRow row = MenuRows().rowsOf({{item}}).rows.front();
  EXPECT_EQ(row.label, "A__b [1m & c");
  EXPECT_TRUE(row.isCheckable && row.isChecked && !row.isVisible);
  EXPECT_EQ(row.shortcut, (std::vector<std::string>{"Control", "Shift", "Super", "t"}));
  EXPECT_EQ(row.iconName, "media-playback-pause-symbolic");
}

TEST(TrayText, isCutInItsMiddle) {
  struct Case {
    const char* text;
    std::optional<double> width;
    const char* shown;
  };
  const std::vector<Case> cases{
      {"1h 5m", 200, "1h 5m"},
      {"abcdefghij", std::nullopt, "abcdefghij"},
      {"abcdefghij", 70, "abcdefghij"},
      {"abcdefghij", 35, "ab…ij"},
      {"abcdefghij", 7, "…"},
      {"会議会議会議", 40, "会…議"},
      {"a\nb", 200, "a b"},
      {"", 10, ""},
  };
  for (const Case& each : cases)
    EXPECT_EQ(trayText(each.text, each.width), each.shown) << each.text;
}

TEST(TrayPixmap, differsByIconAndColour) {
  const Pixmap light = drawTrayIcon(TrayIcon::tracking, 22, TrayColour::light);
  EXPECT_EQ(light.bytes.size(), 22U * 22 * 4);
  EXPECT_EQ(light.bytes[0], 0) << "the corner is clear";
  EXPECT_NE(light.bytes, drawTrayIcon(TrayIcon::tracking, 22, TrayColour::dark).bytes);
  EXPECT_NE(light.bytes, drawTrayIcon(TrayIcon::paused, 22, TrayColour::light).bytes);
  EXPECT_NE(light.bytes, drawTrayIcon(TrayIcon::timer, 22, TrayColour::light).bytes);
}

TEST(Shortcuts, haveKeysyms) {
  struct Case {
    const char* key;
    std::optional<std::uint32_t> keysym;
  };
  const std::vector<Case> cases{{"t", 0x74},       {"T", 0x74},        {"ü", 0xfc},
                                {"ж", 0x01000436}, {"F5", 0xffc2},     {"f35", 0xffe0},
                                {"space", 0x20},   {"Return", 0xff0d}, {"f36", std::nullopt},
                                {"f", 0x66},       {"", std::nullopt}, {"nothing", std::nullopt}};
  for (const Case& each : cases)
    EXPECT_EQ(keysymOf(each.key), each.keysym) << each.key;
}

TEST(PauseDuration, isReadAsPeopleWriteIt) {
  const Date now(std::chrono::seconds(1772438400));  // 08:00 UTC
  struct Case {
    const char* text;
    std::optional<std::uint32_t> seconds;
  };
  const std::vector<Case> cases{{"90s", 90},
                                {"30m", 1800},
                                {"1h", 3600},
                                {"1h30m", 5400},
                                {"1h1m1s", 3661},
                                {"tomorrow", 57600},
                                {"", std::nullopt},
                                {"0s", std::nullopt},
                                {"30", std::nullopt},
                                {"1m1h", std::nullopt},
                                {"1h1h", std::nullopt},
                                {"-5m", std::nullopt},
                                {"99999999999999999999h", std::nullopt},
                                {"1.5h", std::nullopt}};
  for (const Case& each : cases)
    EXPECT_EQ(parsePauseDuration(each.text, now, TimeZone::utc()), each.seconds) << each.text;
}

TEST(StatusJson, hasItsKeysAlsoWithoutAHelper) {
  EXPECT_EQ(statusJson(std::nullopt).substr(0, 35), R"({"running":false,"tracking":false,")");
  const HelperStatus status{true, 0, 1772438400, true, 61, "1.2"};
  EXPECT_EQ(statusJson(status),
            R"({"running":true,"tracking":true,"pausedUntil":null,"timer":{"running":true,)"
            R"("since":"2026-03-02T08:00:00Z"},"inCall":true,"trackedTodaySeconds":61,)"
            R"("version":"1.2"})");
}

TEST(LoginItems, areADesktopFile) {
  const fakes::TemporaryDirectory directory;
  fakes::MemoryLog log;
  const auto file = directory.path() / "autostart/helper.desktop";
  LinuxLoginItems items(file, "/opt/a b/50%/helper", log);
  EXPECT_FALSE(items.startsAtLogin());
  items.setStartsAtLogin(true);
  EXPECT_TRUE(items.startsAtLogin());
  std::ifstream stream(file);
  const std::string text((std::istreambuf_iterator<char>(stream)), {});
  EXPECT_NE(text.find("Exec=\"/opt/a b/50%%/helper\"\n"), std::string::npos) << text;
  items.setStartsAtLogin(false);
  EXPECT_FALSE(items.startsAtLogin());
}

TEST(PendingNotifications, outliveTheProcess) {
  const fakes::TemporaryDirectory directory;
  fakes::MemoryLog log;
  const auto file = directory.path() / "Notifications.plist";
  const UserNotification shown{"Title", "Body", true, "category", {{"key", "value"}}};
  {
    PendingNotifications pending(file, log);
    pending.setServer({"bus", ":1.5"});
    pending.entries().push_back({7, shown, false});
    pending.save();
  }
  PendingNotifications pending(file, log);
  EXPECT_EQ(pending.server(), (NotificationServer{"bus", ":1.5"}));
  const auto entry = pending.take(7);
  ASSERT_TRUE(entry);
  EXPECT_TRUE(entry->isToBeShownAnew);
  EXPECT_EQ(entry->notification.userInfo, shown.userInfo);
  EXPECT_FALSE(pending.take(7));
  std::ofstream(file) << "no property list";
  EXPECT_TRUE(PendingNotifications(file, log).entries().empty());
}

TEST(LaunchCommand, isReadFromADesktopFile) {
  struct Case {
    const char* exec;
    std::vector<std::string> command;
  };
  const std::vector<Case> cases{
      {"tool", {"tool"}},
      {"gnome-control-center  universal-access %U", {"gnome-control-center", "universal-access"}},
      {R"("/opt/a b/tool" --name="x y" "\"q\"" 50%%)",
       {"/opt/a b/tool", "--name=x y", R"("q")", "50%"}},
      {R"(tool "not ended)", {}},
      {"%F", {}},
      {"", {}},
  };
  for (const Case& each : cases)
    EXPECT_EQ(launchCommand(each.exec), each.command) << each.exec;
  EXPECT_EQ(programInPath("/bin/sh"), "/bin/sh");
  EXPECT_FALSE(programInPath("no-such-program"));
}

}  // namespace
}  // namespace kestro
