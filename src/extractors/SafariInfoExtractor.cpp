#include "extractors/SafariInfoExtractor.h"

#include <algorithm>
#include <array>

#include "extractors/TitleParts.h"
#include "foundation/ComparableText.h"
#include "platform/Files.h"

namespace kestro {
namespace {

constexpr std::string_view historySeparator = " — ";

// The part of a language tag before its region or script.
std::string languageCode(const std::string& language) {
  return language.substr(0, language.find_first_of("-_"));
}

// The phrases with which Safari itself says, in one language, that a window is private.
void addPhrases(const PropertyListDictionary& texts, std::set<std::string>& phrases) {
  constexpr std::array keys{"in a private window", "smart search field in a private window",
                            "smart search field showing a secure address in a private window",
                            "Private Browsing"};
  for (const std::string_view key : keys) {
    const PropertyList* value = texts.find(key);
    const auto* text = value ? value->get<std::string>() : nullptr;
    auto phrase = text ? caselessText(*text) : std::string();
    if (!phrase.empty()) phrases.insert(std::move(phrase));
  }
}

std::set<std::string> privatePhrases(const Platform& platform) {
  std::set<std::string> codes;
  for (const std::string& language : platform.preferredLanguages) {
    codes.insert(languageCode(language));
  }
  std::set<std::string> phrases;
  for (const std::string& code : codes) {
    const auto texts = platform.files.dictionary(
        "/System/Library/PrivateFrameworks/Safari.framework/Versions/A/Resources/" + code +
        ".lproj/Localizable.strings");
    if (texts) addPhrases(*texts, phrases);
  }
  return phrases;
}

bool containsAny(const std::string& text, const std::set<std::string>& phrases) {
  return std::ranges::any_of(
      phrases, [&](const std::string& phrase) { return text.find(phrase) != std::string::npos; });
}

// The title of the first item of the history menu, when that is the item that shows the history.
std::optional<std::string> showHistoryTitle(const AccessibilityElement& window) {
  const auto application = window.parent();
  const auto menuBar = application ? application->elementAttribute("AXMenuBar") : std::nullopt;
  if (!menuBar) return std::nullopt;
  for (const AccessibilityElement& item : menuBar->children()) {
    const auto menus = item.children();
    if (menus.empty()) continue;
    if (menus.front().stringAttribute(attribute::identifier) != "SafariHistoryMenu") continue;
    const auto items = menus.front().children();
    if (items.empty()) return std::nullopt;
    if (items.front().stringAttribute(attribute::identifier) != "ShowHistory") return std::nullopt;
    return items.front().title();
  }
  return std::nullopt;
}

AccessibilityElement contentOf(const AccessibilityElement& window) {
  if (window.booleanAttribute(attribute::fullScreen) != true) return window;
  return firstWithRole(role::group, window.childrenInNavigationOrder()).value_or(window);
}

bool isAddressField(const AccessibilityElement& element) {
  const auto elementRole = element.role();
  return elementRole &&
         (*elementRole == role::textField || elementRole->find("SearchField") != std::string::npos);
}

AccessibilityElements groupsOf(const AccessibilityElement& toolbar) {
  auto groups = toolbar.children();
  std::erase_if(groups,
                [](const AccessibilityElement& child) { return child.role() != role::group; });
  return groups;
}

std::optional<AccessibilityElement> addressField(const AccessibilityElement& window) {
  const auto toolbar = firstWithRole(role::toolbar, contentOf(window).children());
  if (!toolbar) return std::nullopt;
  const auto items = childrenOfAll(groupsOf(*toolbar));
  if (auto field = firstMatching(isAddressField, items)) return field;
  const auto text = firstWithRole(role::staticText, items);
  return text ? text->parent() : std::nullopt;
}

}  // namespace

bool isAddress(const std::optional<std::string>& text) {
  return text && text->find("://") != std::string::npos;
}

std::string titleWithHistoryLast(const std::string& title, std::string_view showHistory) {
  auto parts = titleParts(title, historySeparator);
  const std::string first = comparableText(parts.front());
  if (parts.size() < 2 || first.empty()) return title;
  if (comparableText(showHistory).find(first) == std::string::npos) return title;
  std::rotate(parts.begin(), parts.begin() + 1, parts.end());
  return joined(parts, historySeparator);
}

SafariInfoExtractor::SafariInfoExtractor(Process& process)
    : process_(process), titlePhrases_(privatePhrases(process.platform())) {}

void SafariInfoExtractor::writeDetailsForActivity(Activity& activity) {
  const auto& title = activity.details.windowTitle;
  if (title && containsAny(caselessText(*title), titlePhrases_)) {
    activity.details.isPrivateBrowsing = true;
  }
  moveHistoryToEnd(activity);
  for (const AccessibilityElement& window : accessibilityWindows(process_, activity)) {
    if (const auto field = addressField(window)) readAddressField(activity, *field);
  }
}

void SafariInfoExtractor::moveHistoryToEnd(Activity& activity) const {
  auto& title = activity.details.windowTitle;
  // The menu is looked at only for a title that has parts.
  if (!title || title->find(historySeparator) == std::string::npos) return;
  const auto windows = accessibilityWindows(process_, activity);
  if (windows.empty()) return;
  const auto showHistory = showHistoryTitle(windows.front());
  if (showHistory) title = titleWithHistoryLast(*title, *showHistory);
}

void SafariInfoExtractor::readAddressField(Activity& activity,
                                           const AccessibilityElement& field) const {
  if (containsFieldPhrase(field.stringAttribute("AXRoleDescription")) ||
      containsFieldPhrase(field.title())) {
    activity.details.isPrivateBrowsing = true;
  }
  const auto text = firstWithRole(role::staticText, field.children());
  const auto shown = text ? text->value() : std::nullopt;
  const auto address = isAddress(shown) ? shown : field.value();
  if (isAddress(address)) activity.details.documentPath = address;
}

bool SafariInfoExtractor::containsFieldPhrase(const std::optional<std::string>& text) const {
  if (!text) return false;
  const std::string said = caselessText(*text);
  return said.find("priv") != std::string::npos || containsAny(said, titlePhrases_);
}

}  // namespace kestro
