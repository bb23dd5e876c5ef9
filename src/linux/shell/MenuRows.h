// The status item's menu as rows with numbers, as panels know it. A row keeps its number for as
// long as the item lives, so that a click on a menu that has changed meanwhile does what was read
// there. Plain values; main thread only.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Menu.h"

namespace kestro {

struct MenuRow {
  std::int32_t number = 0;
  std::string action;
  std::int64_t tag = 0;
  std::string label;  // for panels: "_" would mark a key and is doubled
  bool isSeparator = false;
  bool isEnabled = true;
  bool isVisible = true;
  bool isChecked = false;
  bool isCheckable = false;
  std::vector<std::string> shortcut;  // "Control", "Alt", "Shift", "Super", then the key
  std::string iconName;               // of the icon theme; empty: none
  std::vector<MenuRow> rows;

  bool operator==(const MenuRow&) const = default;
};

// The theme's icon for one of the program's images; empty: none.
std::string themedIconName(const std::string& image);

class MenuRows {
 public:
  static constexpr std::int32_t rootNumber = 0;

  // The menu under the root row, whose number is 0.
  MenuRow rowsOf(const Menu& menu);

 private:
  // What a row is known by: action, tag, and the how-manieth of these.
  using Key = std::tuple<std::string, std::int64_t, int>;

  MenuRow rowOf(const MenuItem& item, std::map<Key, int>& seen);

  std::map<Key, std::int32_t> numbers_;
};

// Depth first; null: there is none.
const MenuRow* findMenuRow(const MenuRow& root, std::int32_t number);

}  // namespace kestro
