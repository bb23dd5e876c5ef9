// The registry of extractors: one entry a bundle identifier, filled when the probe is made.
#include "extractors/AdobeProjectPathInfoExtractor.h"
#include "extractors/AmazonChimeInfoExtractor.h"
#include "extractors/CatalystInfoExtractor.h"
#include "extractors/ChatGPTAtlasInfoExtractor.h"
#include "extractors/ChatGPTInfoExtractor.h"
#include "extractors/ChromeProfileInfoExtractor.h"
#include "extractors/ClaudeInfoExtractor.h"
#include "extractors/CodexInfoExtractor.h"
#include "extractors/CursorInfoExtractor.h"
#include "extractors/DiaInfoExtractor.h"
#include "extractors/DiscordInfoExtractor.h"
#include "extractors/FinalCutInfoExtractor.h"
#include "extractors/FirefoxInfoExtractor.h"
#include "extractors/GitHubDesktopInfoExtractor.h"
#include "extractors/LogicProInfoExtractor.h"
#include "extractors/MailWritingInfoExtractor.h"
#include "extractors/MicrosoftTeamsInfoExtractor.h"
#include "extractors/MimestreamInfoExtractor.h"
#include "extractors/NewOutlookInfoExtractor.h"
#include "extractors/NotesInfoExtractor.h"
#include "extractors/NotionInfoExtractor.h"
#include "extractors/SafariInfoExtractor.h"
#include "extractors/SignalInfoExtractor.h"
#include "extractors/SlackInfoExtractor.h"
#include "extractors/SparkInfoExtractor.h"
#include "extractors/WebAreaTitleInfoExtractor.h"
#include "extractors/WebAreaURLInfoExtractor.h"
#include "extractors/WhatsAppInfoExtractor.h"
#include "platform/UserDefaults.h"
#include "probe/KSInfoExtractor.h"

namespace kestro {
namespace {

struct Row {
  const ExtractorClass* extractorClass;
  std::vector<std::string_view> bundleIdentifiers;
  // A preference that may name one more identifier; empty: none.
  std::string_view extraIdentifierKey = {};
};

// In order of registration: a later entry replaces an earlier one for the same identifier.
std::vector<Row> registryTable() {
  return {
      {&extractorClass<FinalCutInfoExtractor>,
       {"com.apple.FinalCut", "com.apple.FinalCutApp", "com.apple.FinalCutTrial",
        "com.apple.FinalCutPro", "com.apple.FinalCutPro10"}},
      {&extractorClass<FirefoxInfoExtractor>,
       {"org.mozilla.firefox", "org.mozilla.firefoxdeveloperedition", "org.mozilla.nightly",
        "org.mozilla.librewolf", "app.zen-browser.zen"},
       "KSInfoExtractor_extraBundleIdentifier_firefox"},
      {&extractorClass<SafariInfoExtractor>,
       {"com.apple.Safari", "com.apple.SafariTechnologyPreview"},
       "KSInfoExtractor_extraBundleIdentifier_safari"},
      {&extractorClass<DiaInfoExtractor>, {"company.thebrowser.dia"}},
      {&extractorClass<WebAreaURLInfoExtractor>,
       {"org.getstation.DesktopApp", "com.stack-beta.io", "com.shift.browser"},
       "KSInfoExtractor_extraBundleIdentifier_webAreaURL"},
      {&extractorClass<ChatGPTAtlasInfoExtractor>, {"com.openai.atlas"}},
      {&extractorClass<MailWritingInfoExtractor>, {"com.apple.mail"}},
      {&extractorClass<NotesInfoExtractor>, {"com.apple.Notes"}},
      {&extractorClass<SlackInfoExtractor>, {"com.tinyspeck.slackmacgap"}},
      {&extractorClass<DiscordInfoExtractor>, {"com.hnc.Discord"}},
      {&extractorClass<AmazonChimeInfoExtractor>, {"com.amazon.Amazon-Chime"}},
      {&extractorClass<WhatsAppInfoExtractor>,
       {"WhatsApp", "desktop.WhatsApp", "net.whatsapp.WhatsApp"}},
      {&extractorClass<SignalInfoExtractor>, {"org.whispersystems.signal-desktop"}},
      {&extractorClass<NotionInfoExtractor>, {"notion.id"}},
      {&extractorClass<MicrosoftTeamsInfoExtractor>,
       {"com.microsoft.teams", "com.microsoft.teams2"}},
      {&extractorClass<NewOutlookInfoExtractor>, {"com.microsoft.Outlook"}},
      {&extractorClass<GitHubDesktopInfoExtractor>, {"com.github.GitHubClient"}},
      {&extractorClass<SparkInfoExtractor>,
       {"com.readdle.SparkDesktop", "com.readdle.SparkDesktop.appstore"}},
      {&extractorClass<ChatGPTInfoExtractor>, {"com.openai.chat"}},
      {&extractorClass<CodexInfoExtractor>, {"com.openai.codex"}},
      {&extractorClass<CursorInfoExtractor>, {"com.todesktop.230313mzl4w4u92"}},
      {&extractorClass<ClaudeInfoExtractor>, {"com.anthropic.claudefordesktop"}},
      {&extractorClass<MimestreamInfoExtractor>, {"com.mimestream.Mimestream"}},
      {&extractorClass<LogicProInfoExtractor>, {"com.apple.logic10"}},
      {&extractorClass<WebAreaTitleInfoExtractor>,
       {"com.canva.CanvaDesktop", "com.superhuman.electron", "io.productive"},
       "KSInfoExtractor_extraBundleIdentifier_webAreaTitle"},
      {&extractorClass<ChromeProfileInfoExtractor>,
       {"com.google.Chrome", "com.google.Chrome.canary", "com.google.Chrome.beta",
        "com.google.Chrome.dev", "org.chromium.Chromium"}},
      // Premiere Pro has a bundle identifier a major version.
      {&extractorClass<AdobeProjectPathInfoExtractor>,
       {"com.adobe.PremierePro.10", "com.adobe.PremierePro.11", "com.adobe.PremierePro.12",
        "com.adobe.PremierePro.13", "com.adobe.PremierePro.14", "com.adobe.PremierePro.15",
        "com.adobe.PremierePro.16", "com.adobe.PremierePro.17", "com.adobe.PremierePro.18",
        "com.adobe.PremierePro.19", "com.adobe.PremierePro.20", "com.adobe.PremierePro.21",
        "com.adobe.PremierePro.22", "com.adobe.PremierePro.23", "com.adobe.PremierePro.24",
        "com.adobe.PremierePro.25", "com.adobe.PremierePro.26", "com.adobe.PremierePro.27",
        "com.adobe.PremierePro.28", "com.adobe.PremierePro.29", "com.adobe.AfterEffects"}},
  };
}

}  // namespace

void KSInfoExtractor::registerExtractors() {
  const UserDefaults& defaults = process_.platform().defaults.standard();
  for (const Row& row : registryTable()) {
    for (const std::string_view bundleIdentifier : row.bundleIdentifiers) {
      addApplicationInfoExtractor(row.extractorClass, bundleIdentifier);
    }
    if (row.extraIdentifierKey.empty()) continue;
    const auto extraIdentifier = defaults.string(row.extraIdentifierKey);
    if (extraIdentifier) addApplicationInfoExtractor(row.extractorClass, *extraIdentifier);
  }
}

void KSInfoExtractor::addApplicationInfoExtractor(const ExtractorClass* extractorClass,
                                                  std::string_view bundleIdentifier) {
  if (!extractorClass || bundleIdentifier.empty()) return;
  registry_.insert_or_assign(std::string(bundleIdentifier), extractorClass);
}

const ExtractorClass* KSInfoExtractor::registeredApplicationInfoExtractorForBundleIdentifier(
    const std::optional<std::string>& bundleIdentifier) const {
  if (!bundleIdentifier) return nullptr;
  const auto found = registry_.find(*bundleIdentifier);
  return found == registry_.end() ? nullptr : found->second;
}

void KSInfoExtractor::callInfoExtractorForActivity(Activity& activity) {
  const auto& bundleIdentifier = activity.applicationBundleIdentifier();
  if (!bundleIdentifier) return;
  const auto* registered = registeredApplicationInfoExtractorForBundleIdentifier(bundleIdentifier);
  const ExtractorClass& extractor =
      registered ? *registered : extractorClass<CatalystInfoExtractor>;
  extractor.sharedExtractor(process_).writeDetailsForActivity(activity);
}

}  // namespace kestro
