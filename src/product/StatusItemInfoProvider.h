// Renders the status item and the information rows of its menu: part of the product's
// user-interface library. Main thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Menu.h"
#include "platform/StatusBar.h"
#include "product/TimeEntries.h"

namespace kestro {

class Process;
class Timer;

// Since midnight in the user's time zone, what is not written yet left out. Absent without a
// database that is open.
std::optional<Seconds> timeTrackedToday(Process& process);

// Who owns the status item.
class StatusItemPresenter {
 public:
  virtual ~StatusItemPresenter() = default;
  virtual void updateStatusItemProperties() = 0;
  // Absent: there is nothing to tell about the sync.
  virtual void updateSyncStatusItemWithTitle(const std::optional<std::string>& title) = 0;
};

class StatusItemInfoProvider {
 public:
  static StatusItemInfoProvider& sharedInstance(Process& process);
  // Use sharedInstance.
  explicit StatusItemInfoProvider(Process& process);
  ~StatusItemInfoProvider();
  StatusItemInfoProvider(const StatusItemInfoProvider&) = delete;
  StatusItemInfoProvider& operator=(const StatusItemInfoProvider&) = delete;

  // Not owned; null: none.
  void setPresenter(StatusItemPresenter* presenter);
  // Has the presenter update the item with the run loop's next task; requests until then are one.
  void dispatchStatusUpdateRequest(bool isForced);
  // Writes the item's title and image, and the rows' titles. Rows may be null. Never opens the
  // database: without one the rows say nothing.
  void updateStatusItem(StatusItem& statusItem, MenuItem* productivityScoreMenuItem,
                        MenuItem* taskInfoMenuItem);
  void setStatusItemHighlighted(bool isHighlighted);
  // Has the presenter get the sync row's title, later.
  void prepareSyncStatusMenuItem(MenuItem* item);

 private:
  void updateAfter(Seconds delay);

  Process& process_;
  StatusItemPresenter* presenter_ = nullptr;
  bool isHighlighted_ = false;
  std::unique_ptr<Timer> nextUpdate_;
  std::unique_ptr<Timer> nextSyncTitle_;
};

// The latest time entries, ready to be started again from the menu.
class TaskActivityQuickStartProvider {
 public:
  // The action of its rows; the tag tells which.
  static constexpr const char* action = "startQuickTask:";

  static TaskActivityQuickStartProvider& sharedInstance(Process& process);
  // Use sharedInstance.
  explicit TaskActivityQuickStartProvider(Process& process);

  // Below the row that starts a timer, instead of those it inserted before.
  void insertQuickStartMenuItems(Menu& menu);
  // Does what the row with this tag says.
  void start(std::int64_t tag);

 private:
  Process& process_;
  std::vector<TaskActivityDescriptor> offered_;  // the row with tag 1 first
};

}  // namespace kestro
