#include "probe/ApplicationLists.h"

#include "platform/UserDefaults.h"

namespace kestro {
namespace {

// Both spellings of the security agent occur.
const char* const systemAgents[] = {
    "com.apple.loginwindow",
    "com.apple.securityagent",
    "com.apple.UnmountAssistantAgent",
    "com.apple.UserNotificationCenter",
    "com.apple.systemuiserver",
    "com.apple.ScreenSaver.Engine",
    "com.apple.coreservices.uiagent",
    "com.apple.WebKit.PluginHost",
    "com.apple.AutomatorRunner",
    "com.apple.frameworks.diskimages.uiagent",
    "com.apple.iCal.helper",
    "com.apple.dock",
    "com.apple.dashboard.client",
    "com.apple.dock.syncclient",
    "com.apple.dashboard.installer",
    "com.apple.dashboard.widgetadvisory",
    "com.apple.FontRegistryUIAgent",
    "com.apple.eap8021x.eaptlstrust",
    "com.apple.NetAuthAgent",
    "com.apple.airport.helper",
    "com.apple.FollowUpUI",
    "com.apple.SecurityAgent",
    "com.apple.locationmenu",
};

const char* const withoutUsableAccessibility[] = {
    "com.mathworks.matlab",
    "org.rstudio.RStudio",
    "org.datavyu",
    "com.serato.seratodj",
    "com.moleskine.journey",
    "com.codeux.apps.textual",
    "org.gephi",
    "com.aquafold.datastudio.DataStudio",
    "com.tableausoftware.tableaudesktop",
    "com.tableausoftware.tableaupublic",
};

}  // namespace

const ApplicationLists::Set& ApplicationLists::build(std::optional<Set>& list, Set builtIn,
                                                     std::string_view preferenceKey,
                                                     PreferenceRole preferenceRole) {
  list = std::move(builtIn);
  const auto stored = process_.platform().defaults.standard().stringList(preferenceKey);
  if (!stored) return *list;
  if (preferenceRole == PreferenceRole::replaces) list->clear();
  list->insert(stored->begin(), stored->end());
  return *list;
}

const ApplicationLists::Set& ApplicationLists::alwaysIgnoredApplicationBundleIdentifiers() {
  auto& list = alwaysIgnoredBundleIdentifiers_;
  if (list) return *list;
  return build(list, {std::begin(systemAgents), std::end(systemAgents)},
               "extraAlwaysIgnoredApplicationBundleIdentifiers");
}

const ApplicationLists::Set& ApplicationLists::alwaysIgnoredApplicationExecutableNames() {
  auto& list = alwaysIgnoredExecutableNames_;
  if (list) return *list;
  return build(list, {"ccc_helper"}, "extraAlwaysIgnoredApplicationExecutableNames");
}

const ApplicationLists::Set& ApplicationLists::noWindowTitleApplicationBundleIdentifiers() {
  auto& list = noWindowTitle_;
  if (list) return *list;
  return build(list,
               {process_.platform().mainBundle.identifier, KESTRO_SETAPP_BUNDLE_IDENTIFIER,
                "com.blizzard.Starcraft"},
               "extraNoWindowTitleApplicationBundleIdentifiers");
}

const ApplicationLists::Set& ApplicationLists::noAccessibilityApplicationBundleIdentifiers() {
  auto& list = noAccessibility_;
  if (list) return *list;
  return build(list, {std::begin(withoutUsableAccessibility), std::end(withoutUsableAccessibility)},
               "extraNoAccessibilityApplicationBundleIdentifiers", PreferenceRole::replaces);
}

const ApplicationLists::Set& ApplicationLists::noPathExtractionApplicationBundleIdentifiers() {
  auto& list = noPathExtraction_;
  if (list) return *list;
  return build(list, {}, "KSInfoExtractor_extraNoPathExtractionApplicationBundleIdentifiers");
}

}  // namespace kestro
