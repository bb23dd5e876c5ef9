#include "app/MainMenu.h"

#include <nlohmann/json.hpp>

#include "platform/LocalizedStrings.h"

namespace kestro {
namespace {

using Json = nlohmann::json;

std::vector<MenuItem> makeRows(Process& process, const Json& descriptions);

MenuItem makeRow(Process& process, const Json& description) {
  MenuItem item;
  item.isSeparator = description.empty();
  if (item.isSeparator) return item;
  item.identifier = description.value("identifier", "");
  item.action = description.value("action", "");
  item.tag = description.value("tag", std::int64_t{0});
  const std::string title = description.value("title", "");
  item.title = description.value("placeholder", false) ? title : localizedString(process, title);
  // A row that is only filled is nothing to choose.
  item.isEnabled = !item.action.empty();
  if (description.contains("rows")) item.submenu = makeRows(process, description["rows"]);
  return item;
}

std::vector<MenuItem> makeRows(Process& process, const Json& descriptions) {
  std::vector<MenuItem> rows;
  for (const Json& description : descriptions)
    rows.push_back(makeRow(process, description));
  return rows;
}

}  // namespace

Menu makeMainMenu(Process& process) {
  const Json description = Json::parse(mainMenuDescription(), nullptr, true, true);
  return {makeRows(process, description)};
}

}  // namespace kestro
