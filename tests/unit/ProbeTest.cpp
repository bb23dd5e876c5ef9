// The probe's tables: clean-up of titles, and which extractor an application gets.
#include <gtest/gtest.h>

#include "SceneProcess.h"
#include "probe/KSInfoExtractor.h"
#include "probe/WindowTitleCleanup.h"

namespace kestro {
namespace {

struct CleanupCase {
  const char* bundleIdentifier;
  std::string windowTitle, cleanedWindowTitle;
  std::string documentTitle, cleanedDocumentTitle;
};

TEST(WindowTitleCleanup, removesMarkers) {
  constexpr const char* editor = "com.example.editor";
  constexpr const char* mail = "com.apple.mail";
  const CleanupCase cases[] = {
      {editor, "Report.docx*", "Report.docx", "Report.docx**", "Report.docx*"},
      {editor, "* first", "* first", "*", ""},
      {editor, "Budget — Edited", "Budget", "Budget - Edited", "Budget"},
      {editor, "Budget–Edited", "Budget", "Budget-Edited", "Budget"},
      {editor, "Edited – Budget", "Budget", "Edited-Budget", "Budget"},
      {editor, "Budget — edited", "Budget — edited", "edited — Budget", "edited — Budget"},
      {editor, "Budget — Edited*", "Budget", "Edited — Budget — Edited*", "Budget"},
      {editor, "Budget  - Edited", "Budget ", "Edited -  Budget", " Budget"},
      {editor, "Budget\u00a0—\u3000Edited", "Budget", "Budget — Edited —", "Budget — Edited —"},
      {editor, "Budget — Edited\nmore", "Budget — Edited\nmore", "a\nEdited — b", "a\nEdited — b"},
      {editor, "Edited", "Edited", "", ""},
      {editor, "\u200eIn\u200ebox\u200f", "Inbox", "\u200eInbox\u200f", "\u200eInbox\u200f"},
      // The asterisk is looked for before the mark behind it goes.
      {editor, "Inbox*\u200e", "Inbox*", "Edited — ", ""},
      {mail, "Inbox (12)", "Inbox (12)", "Inbox (12)", "Inbox"},
      {mail, "", "", "Inbox (1234 messages, 5 unread)", "Inbox"},
      {mail, "", "", "Inbox (new)", "Inbox (new)"},
      {mail, "", "", "Inbox (5)", "Inbox (5)"},
      {mail, "", "", "Inbox\u00a0(12)*", "Inbox"},
      {mail, "", "", "Inbox  (12)", "Inbox "},
      {mail, "", "", "Inbox (12) (34)", "Inbox (12)"},
      {mail, "", "", "Inbox (1(2)", "Inbox (1(2)"},
      {mail, "", "", "Inbox (٣٤)", "Inbox"},
      {"com.freron.MailMate", "", "", "Inbox (12)", "Inbox"},
      {"com.Apple.mail", "", "", "Inbox (12)", "Inbox (12)"},
      {editor, "", "", "Inbox (12)", "Inbox (12)"},
      {editor, "bad \xff bytes*", "bad \xef\xbf\xbd bytes", "kept \xff", "kept \xff"},
  };
  SceneProcess scene("{}");
  for (const auto& row : cases) {
    RunningApplication application;
    application.bundleIdentifier = row.bundleIdentifier;
    Activity activity(application, {});
    scene.process().shared<WindowTitleCleanup>().apply(activity);
    EXPECT_EQ(activity.details, ActivityDetails{}) << "absent titles stay absent";
    activity.details.windowTitle = row.windowTitle;
    activity.details.documentTitle = row.documentTitle;
    scene.process().shared<WindowTitleCleanup>().apply(activity);
    EXPECT_EQ(activity.details.windowTitle, row.cleanedWindowTitle) << row.windowTitle;
    EXPECT_EQ(activity.details.documentTitle, row.cleanedDocumentTitle) << row.documentTitle;
  }
}

std::string_view extractorOf(SceneProcess& scene, const char* bundleIdentifier) {
  const auto* extractor =
      scene.process()
          .shared<KSInfoExtractor>()
          .registeredApplicationInfoExtractorForBundleIdentifier(std::string(bundleIdentifier));
  return extractor ? extractor->name : "none";
}

TEST(Registry, givesEachApplicationItsExtractor) {
  SceneProcess scene(
      R"({"defaults": {"KSInfoExtractor_extraBundleIdentifier_safari": "org.mozilla.firefox",
    "KSInfoExtractor_extraBundleIdentifier_firefox": "", "KSInfoExtractor_extraBundleIdentifier_webAreaURL": ["io.productive"]}})");
  struct {
    const char* bundleIdentifier;
    const char* extractor;
  } const cases[] = {
      {"com.apple.FinalCutPro10", "FinalCutInfoExtractor"},
      {"org.mozilla.nightly", "FirefoxInfoExtractor"},
      {"org.mozilla.firefox",
       "SafariInfoExtractor"},  // the later registration replaces the earlier
      {"com.apple.Safari", "SafariInfoExtractor"},
      {"com.apple.safari", "none"},
      {"company.thebrowser.dia", "DiaInfoExtractor"},
      {"com.shift.browser", "WebAreaURLInfoExtractor"},
      {"com.openai.atlas", "ChatGPTAtlasInfoExtractor"},
      {"com.apple.mail", "MailWritingInfoExtractor"},
      {"com.apple.Notes", "NotesInfoExtractor"},
      {"com.tinyspeck.slackmacgap", "SlackInfoExtractor"},
      {"com.hnc.Discord", "DiscordInfoExtractor"},
      {"com.amazon.Amazon-Chime", "AmazonChimeInfoExtractor"},
      {"WhatsApp", "WhatsAppInfoExtractor"},
      {"org.whispersystems.signal-desktop", "SignalInfoExtractor"},
      {"notion.id", "NotionInfoExtractor"},
      {"com.microsoft.teams2", "MicrosoftTeamsInfoExtractor"},
      {"com.microsoft.Outlook", "NewOutlookInfoExtractor"},
      {"com.github.GitHubClient", "GitHubDesktopInfoExtractor"},
      {"com.readdle.SparkDesktop.appstore", "SparkInfoExtractor"},
      {"com.openai.chat", "ChatGPTInfoExtractor"},
      {"com.openai.codex", "CodexInfoExtractor"},
      {"com.todesktop.230313mzl4w4u92", "CursorInfoExtractor"},
      {"com.anthropic.claudefordesktop", "ClaudeInfoExtractor"},
      {"com.mimestream.Mimestream", "MimestreamInfoExtractor"},
      {"com.apple.logic10", "LogicProInfoExtractor"},
      {"io.productive", "WebAreaTitleInfoExtractor"},  // a list is no text
      {"org.chromium.Chromium", "ChromeProfileInfoExtractor"},
      {"com.adobe.PremierePro.10", "AdobeProjectPathInfoExtractor"},
      {"com.adobe.PremierePro.29", "AdobeProjectPathInfoExtractor"},
      {"com.adobe.PremierePro.9", "none"},
      {"com.adobe.PremierePro.30", "none"},
      {"com.adobe.AfterEffects", "AdobeProjectPathInfoExtractor"},
      {"", "none"},
      {"com.example.unknown", "none"},
  };
  for (const auto& [bundleIdentifier, extractor] : cases) {
    EXPECT_EQ(extractorOf(scene, bundleIdentifier), extractor) << bundleIdentifier;
  }
}

TEST(Registry, refusesNothingToRegister) {
  SceneProcess scene("{}");
  auto& probe = scene.process().shared<KSInfoExtractor>();
  probe.addApplicationInfoExtractor(nullptr, "com.example.new");
  EXPECT_EQ(extractorOf(scene, "com.example.new"), "none");
  EXPECT_EQ(probe.registeredApplicationInfoExtractorForBundleIdentifier(std::nullopt), nullptr);
}

TEST(ApplicationLists, areTheSameSetAtEveryCall) {
  SceneProcess scene("{}");
  auto& probe = scene.process().shared<KSInfoExtractor>();
  EXPECT_EQ(&probe.noAccessibilityApplicationBundleIdentifiers(),
            &probe.noAccessibilityApplicationBundleIdentifiers());
  EXPECT_EQ(probe.noAccessibilityApplicationBundleIdentifiers().size(), 10U);
  EXPECT_TRUE(probe.noPathExtractionApplicationBundleIdentifiers().empty());
}

}  // namespace
}  // namespace kestro
