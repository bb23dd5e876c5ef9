#include "linux/applications/BundleIdentifiers.h"

#include <algorithm>
#include <cctype>

namespace kestro {
namespace {

struct Row {
  std::string_view name;  // lower case
  std::string_view bundleIdentifier;
};

// Names as the packages of Debian, Fedora, Arch, Flathub and the makers themselves use them.
constexpr Row browsers[]{
    {"chromium", "org.chromium.Chromium"},
    {"chromium-browser", "org.chromium.Chromium"},
    {"org.chromium.chromium", "org.chromium.Chromium"},
    {"google-chrome", "com.google.Chrome"},
    {"google-chrome-stable", "com.google.Chrome"},
    {"com.google.chrome", "com.google.Chrome"},
    {"google-chrome-beta", "com.google.Chrome.beta"},
    {"google-chrome-unstable", "com.google.Chrome.dev"},
    {"com.google.chromedev", "com.google.Chrome.dev"},
    {"google-chrome-canary", "com.google.Chrome.canary"},
    {"firefox", "org.mozilla.firefox"},
    {"firefox-esr", "org.mozilla.firefox"},
    {"firefox_firefox", "org.mozilla.firefox"},
    {"org.mozilla.firefox", "org.mozilla.firefox"},
    {"firefox-developer-edition", "org.mozilla.firefoxdeveloperedition"},
    {"firefox-devedition", "org.mozilla.firefoxdeveloperedition"},
    {"firefoxdeveloperedition", "org.mozilla.firefoxdeveloperedition"},
    {"firefox-nightly", "org.mozilla.nightly"},
    {"org.mozilla.firefoxnightly", "org.mozilla.nightly"},
    {"librewolf", "org.mozilla.librewolf"},
    {"io.gitlab.librewolf-community", "org.mozilla.librewolf"},
    {"zen", "app.zen-browser.zen"},
    {"zen-browser", "app.zen-browser.zen"},
    {"app.zen_browser.zen", "app.zen-browser.zen"},
};

constexpr Row otherApplications[]{
    {"slack", "com.tinyspeck.slackmacgap"},
    {"slack_slack", "com.tinyspeck.slackmacgap"},
    {"com.slack.slack", "com.tinyspeck.slackmacgap"},
    {"discord", "com.hnc.Discord"},
    {"com.discordapp.discord", "com.hnc.Discord"},
    {"signal", "org.whispersystems.signal-desktop"},
    {"signal-desktop", "org.whispersystems.signal-desktop"},
    {"org.signal.signal", "org.whispersystems.signal-desktop"},
    {"notion", "notion.id"},
    {"notion-app", "notion.id"},
    {"notion-desktop", "notion.id"},
    {"teams", "com.microsoft.teams"},
    {"teams-for-linux", "com.microsoft.teams2"},
    {"com.github.ismaelmartinez.teams_for_linux", "com.microsoft.teams2"},
    {"github-desktop", "com.github.GitHubClient"},
    {"io.github.shiftey.desktop", "com.github.GitHubClient"},
    {"cursor", "com.todesktop.230313mzl4w4u92"},
    {"claude-desktop", "com.anthropic.claudefordesktop"},
    {"chatgpt", "com.openai.chat"},
    {"chatgpt-desktop", "com.openai.chat"},
    {"whatsapp", "net.whatsapp.WhatsApp"},
    {"whatsapp-desktop", "net.whatsapp.WhatsApp"},
    {"whatsapp-for-linux", "net.whatsapp.WhatsApp"},
    {"wasistlos", "net.whatsapp.WhatsApp"},
    {"com.github.eneshecan.whatsappforlinux", "net.whatsapp.WhatsApp"},
    {"com.rtosta.zapzap", "net.whatsapp.WhatsApp"},
    {"zapzap", "net.whatsapp.WhatsApp"},
    {"canva", "com.canva.CanvaDesktop"},
    {"superhuman", "com.superhuman.electron"},
    {"productive", "io.productive"},
    {"station", "org.getstation.DesktopApp"},
    {"shift", "com.shift.browser"},
};

template <std::size_t Count>
std::optional<std::string> find(const Row (&rows)[Count], std::string_view name) {
  std::string key(name);
  std::ranges::transform(key, key.begin(), [](unsigned char c) { return std::tolower(c); });
  const auto* row = std::ranges::find(rows, key, &Row::name);
  return row == std::end(rows) ? std::nullopt : std::optional(std::string(row->bundleIdentifier));
}

}  // namespace

std::optional<std::string> bundleIdentifierForName(std::string_view name) {
  auto identifier = find(browsers, name);
  return identifier ? identifier : find(otherApplications, name);
}

bool isNameOfBrowser(std::string_view name) {
  return find(browsers, name).has_value();
}

}  // namespace kestro
