#include "platform/Menu.h"

namespace kestro {
namespace {

MenuItem* firstWith(std::string MenuItem::*field, std::string_view text,
                    std::vector<MenuItem>& items) {
  for (MenuItem& item : items) {
    if (item.*field == text) return &item;
    if (MenuItem* found = firstWith(field, text, item.submenu)) return found;
  }
  return nullptr;
}

}  // namespace

MenuItem* Menu::itemWithIdentifier(std::string_view identifier) {
  return firstWith(&MenuItem::identifier, identifier, items);
}

MenuItem* Menu::itemWithAction(std::string_view action) {
  return firstWith(&MenuItem::action, action, items);
}

}  // namespace kestro
