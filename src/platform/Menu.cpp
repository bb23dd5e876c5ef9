#include "platform/Menu.h"

namespace kestro {
namespace {

MenuItem* firstWith(std::string_view identifier, std::vector<MenuItem>& items) {
  for (MenuItem& item : items) {
    if (item.identifier == identifier) return &item;
    if (MenuItem* found = firstWith(identifier, item.submenu)) return found;
  }
  return nullptr;
}

}  // namespace

MenuItem* Menu::itemWithIdentifier(std::string_view identifier) {
  return firstWith(identifier, items);
}

}  // namespace kestro
