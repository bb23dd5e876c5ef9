// A menu as a model of rows, which the platform shows. Plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

enum class ModifierKey { command, option, control, shift };
using ModifierKeys = std::vector<ModifierKey>;  // in this order, each once

// A key with modifiers that are held with it, as menus show it. No key: no shortcut.
struct KeyEquivalent {
  std::string key;
  ModifierKeys modifiers;

  bool operator==(const KeyEquivalent&) const = default;
};

struct MenuItem {
  std::string identifier;  // for rows that something else fills; empty for the others
  std::string action;      // "pauseTrackingFor:"; empty: choosing the row does nothing
  std::int64_t tag = 0;
  std::string title;
  bool isSeparator = false;
  bool isEnabled = true;
  bool isChecked = false;
  bool isHidden = false;
  KeyEquivalent keyEquivalent;
  std::optional<std::string> image;  // by name
  std::vector<MenuItem> submenu;
};

struct Menu {
  std::vector<MenuItem> items;

  // The first row, submenus included, that has the identifier; null: none. Valid until rows are
  // added or removed.
  MenuItem* itemWithIdentifier(std::string_view identifier);
};

}  // namespace kestro
