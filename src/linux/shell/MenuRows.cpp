#include "linux/shell/MenuRows.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "foundation/Utf8.h"

namespace kestro {
namespace {

struct ImageIcon {
  std::string_view image;
  std::string_view icon;
};
constexpr std::array<ImageIcon, 7> imageIcons{{
    {"kestro.tracking", "kestro-tracking-symbolic"},
    {"kestro.paused", "kestro-paused-symbolic"},
    {"kestro.timer", "kestro-timer-symbolic"},
    {"pause.circle", "media-playback-pause-symbolic"},
    {"play.circle", "media-playback-start-symbolic"},
    {"custom.clock.badge.play", "kestro-timer-symbolic"},
    {"custom.clock.badge.pause", "media-playback-stop-symbolic"},
}};

// The rows whose check mark comes and goes. The others never show one.
constexpr std::array<std::string_view, 2> checkableActions{"toggleAskAfterIdle:",
                                                           "toggleAutomaticLaunch:"};

std::string labelOf(const std::string& title) {
  std::string label;
  for (const char character : withoutControlCharacters(title)) {
    label += character;
    if (character == '_') label += '_';
  }
  return label;
}

// The order in which desktops write them.
std::vector<std::string> shortcutOf(const KeyEquivalent& keys) {
  if (keys.key.empty()) return {};
  constexpr std::array<std::pair<ModifierKey, const char*>, 4> names{
      {{ModifierKey::control, "Control"},
       {ModifierKey::option, "Alt"},
       {ModifierKey::shift, "Shift"},
       {ModifierKey::command, "Super"}}};
  std::vector<std::string> shortcut;
  for (const auto& [modifier, name] : names) {
    if (std::ranges::find(keys.modifiers, modifier) != keys.modifiers.end()) {
      shortcut.emplace_back(name);
    }
  }
  shortcut.push_back(keys.key);
  return shortcut;
}

}  // namespace

std::string themedIconName(const std::string& image) {
  const auto found = std::ranges::find(imageIcons, image, &ImageIcon::image);
  return found == imageIcons.end() ? "" : std::string(found->icon);
}

MenuRow MenuRows::rowsOf(const Menu& menu) {
  MenuRow root;
  std::map<Key, int> seen;
  for (const MenuItem& item : menu.items)
    root.rows.push_back(rowOf(item, seen));
  return root;
}

MenuRow MenuRows::rowOf(const MenuItem& item, std::map<Key, int>& seen) {
  const std::string& known = item.action.empty() ? item.identifier : item.action;
  const int occurrence = seen[{known, item.tag, 0}]++;
  const auto next = static_cast<std::int32_t>(numbers_.size() + 1);
  MenuRow row;
  row.number = numbers_.try_emplace({known, item.tag, occurrence}, next).first->second;
  row.action = item.action;
  row.tag = item.tag;
  row.label = labelOf(item.title);
  row.isSeparator = item.isSeparator;
  row.isEnabled = item.isEnabled;
  row.isVisible = !item.isHidden;
  row.isChecked = item.isChecked;
  row.isCheckable =
      std::ranges::find(checkableActions, std::string_view(item.action)) != checkableActions.end();
  row.shortcut = shortcutOf(item.keyEquivalent);
  if (item.image) row.iconName = themedIconName(*item.image);
  for (const MenuItem& child : item.submenu)
    row.rows.push_back(rowOf(child, seen));
  return row;
}

const MenuRow* findMenuRow(const MenuRow& root, std::int32_t number) {
  if (root.number == number) return &root;
  for (const MenuRow& row : root.rows) {
    if (const MenuRow* found = findMenuRow(row, number)) return found;
  }
  return nullptr;
}

}  // namespace kestro
