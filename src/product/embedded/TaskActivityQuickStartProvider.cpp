#include <SQLiteCpp/SQLiteCpp.h>

#include <algorithm>

#include "platform/Clock.h"
#include "platform/Process.h"
#include "product/KestroUI.h"
#include "product/embedded/ProductOperations.h"
#include "product/embedded/TimeEntryTable.h"

namespace kestro {
namespace {

constexpr int mostOffered = 3;

std::vector<TaskActivityDescriptor> latestKinds(Process& process) {
  DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process);
  if (!database || !database->isOpen()) return {};
  try {
    return TimeEntryTable(database->db()).latestKinds(mostOffered);
  } catch (const SQLite::Exception& failure) {
    database->noteReadFailure(failure);
    return {};
  }
}

std::string rowTitle(const TaskActivityDescriptor& kind) {
  if (!kind.project) return kind.title.value_or("");
  return kind.title ? *kind.title + " – " + *kind.project : *kind.project;
}

}  // namespace

TaskActivityQuickStartProvider& TaskActivityQuickStartProvider::sharedInstance(Process& process) {
  return process.shared<TaskActivityQuickStartProvider>();
}

TaskActivityQuickStartProvider::TaskActivityQuickStartProvider(Process& process)
    : process_(process) {
  recordOperation(process, "TaskActivityQuickStartProvider sharedInstance");
}

void TaskActivityQuickStartProvider::insertQuickStartMenuItems(Menu& menu) {
  recordOperation(process_, "TaskActivityQuickStartProvider insertQuickStartMenuItemsInto");
  std::erase_if(menu.items, [](const MenuItem& item) { return item.action == action; });
  offered_ = latestKinds(process_);
  auto place = std::ranges::find(menu.items, "startTask:", &MenuItem::action);
  if (place != menu.items.end()) ++place;
  std::vector<MenuItem> rows;
  for (const TaskActivityDescriptor& kind : offered_) {
    MenuItem row;
    row.action = action;
    row.tag = static_cast<std::int64_t>(rows.size()) + 1;
    row.title = rowTitle(kind);
    rows.push_back(std::move(row));
  }
  menu.items.insert(place, rows.begin(), rows.end());
}

void TaskActivityQuickStartProvider::start(std::int64_t tag) {
  recordOperation(process_, "TaskActivityQuickStartProvider start", {tag});
  if (tag < 1 || static_cast<std::size_t>(tag) > offered_.size()) return;
  const TaskActivityDescriptor& kind = offered_[static_cast<std::size_t>(tag) - 1];
  OngoingTaskActivityManager(process_).startTaskActivity(
      {process_.platform().clock.now(), kind.title, kind.project});
}

}  // namespace kestro
