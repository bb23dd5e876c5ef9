#include <optional>

#include "platform/Process.h"
#include "product/KestroDatabase.h"

namespace kestro {
namespace {

std::set<std::string> knownChromeBasedBrowserBundleIDs() {
  return {
      "com.google.Chrome",
      "com.google.Chrome.beta",
      "com.google.Chrome.canary",
      "com.google.Chrome.dev",
      "org.chromium.Chromium",
      "com.microsoft.edgemac",
      "com.microsoft.edgemac.Beta",
      "com.microsoft.edgemac.Canary",
      "com.microsoft.edgemac.Dev",
      "com.brave.Browser",
      "com.brave.Browser.beta",
      "com.brave.Browser.nightly",
      "com.operasoftware.Opera",
      "com.operasoftware.OperaDeveloper",
      "com.operasoftware.OperaGX",
      "com.operasoftware.OperaNext",
      "com.vivaldi.Vivaldi",
      "com.vivaldi.Vivaldi.snapshot",
      "company.thebrowser.Browser",  // Arc
      "company.thebrowser.dia",
      "com.openai.atlas",
      "ai.perplexity.comet",
      "ru.yandex.desktop.yandex-browser",
      "com.naver.Whale",
      "com.coccoc.Coccoc",
      "com.pushplaylabs.sidekick",
      "com.bookry.wavebox",
      "net.imput.helium",
  };
}

// Those with an engine of another kind.
std::set<std::string> knownOtherBrowserBundleIDs() {
  return {
      "com.apple.Safari",
      "com.apple.SafariTechnologyPreview",
      "org.mozilla.firefox",
      "org.mozilla.firefoxdeveloperedition",
      "org.mozilla.nightly",
      "org.mozilla.librewolf",
      "org.torproject.torbrowser",
      "net.waterfox.waterfox",
      "app.zen-browser.zen",
      "com.duckduckgo.macos.browser",
      "com.kagi.kagimacOS",  // Orion
      "com.apple.iCab",
      "org.getstation.DesktopApp",
      "com.stack-beta.io",
      "com.shift.browser",
  };
}

std::set<std::string> texts(const PropertyListArray& list) {
  std::set<std::string> members;
  for (const PropertyList& member : list) {
    if (const auto* text = member.get<std::string>()) members.insert(*text);
  }
  return members;
}

// A list among the product's conditions; absent: the known one stands.
std::optional<std::set<std::string>> givenList(const Process& process, std::string_view condition) {
  const PropertyList* given = process.platform().productConditions.find(condition);
  const auto* list = given ? given->get<PropertyListArray>() : nullptr;
  return list ? std::optional(texts(*list)) : std::nullopt;
}

struct ChromeBasedBrowsers {
  explicit ChromeBasedBrowsers(const Process& process)
      : bundleIdentifiers(givenList(process, "chromeBasedBrowsers")
                              .value_or(knownChromeBasedBrowserBundleIDs())) {}
  std::set<std::string> bundleIdentifiers;
};

struct WebBrowsers {
  explicit WebBrowsers(Process& process) {
    const auto given = givenList(process, "webBrowsing");
    bundleIdentifiers = given ? *given : knownOtherBrowserBundleIDs();
    if (given) return;
    const auto& others = ApplicationList::chromeBasedBrowserBundleIDs(process);
    bundleIdentifiers.insert(others.begin(), others.end());
  }
  std::set<std::string> bundleIdentifiers;
};

}  // namespace

const std::set<std::string>& ApplicationList::chromeBasedBrowserBundleIDs(Process& process) {
  return process.shared<ChromeBasedBrowsers>().bundleIdentifiers;
}

const std::set<std::string>& ApplicationList::webBrowsing(Process& process) {
  return process.shared<WebBrowsers>().bundleIdentifiers;
}

}  // namespace kestro
