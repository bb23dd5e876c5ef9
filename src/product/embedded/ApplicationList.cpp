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

std::set<std::string> texts(const PropertyListArray& list) {
  std::set<std::string> members;
  for (const PropertyList& member : list) {
    if (const auto* text = member.get<std::string>()) members.insert(*text);
  }
  return members;
}

// A list among the product's conditions stands in for the known one.
struct ChromeBasedBrowsers {
  explicit ChromeBasedBrowsers(const Process& process) {
    const PropertyList* given = process.platform().productConditions.find("chromeBasedBrowsers");
    const auto* list = given ? given->get<PropertyListArray>() : nullptr;
    bundleIdentifiers = list ? texts(*list) : knownChromeBasedBrowserBundleIDs();
  }

  std::set<std::string> bundleIdentifiers;
};

}  // namespace

const std::set<std::string>& ApplicationList::chromeBasedBrowserBundleIDs(Process& process) {
  return process.shared<ChromeBasedBrowsers>().bundleIdentifiers;
}

}  // namespace kestro
