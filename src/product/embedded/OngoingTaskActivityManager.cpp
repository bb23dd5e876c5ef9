// The task timer: one row of the database, or what the product's conditions say.
#include <SQLiteCpp/SQLiteCpp.h>

#include <algorithm>

#include "platform/Clock.h"
#include "platform/LocalizedStrings.h"
#include "platform/Menu.h"
#include "platform/Process.h"
#include "platform/TimeEntryEditors.h"
#include "product/KestroDatabase.h"
#include "product/KestroLegacy.h"
#include "product/KestroUI.h"
#include "product/embedded/EditorAids.h"
#include "product/embedded/NonEmptyText.h"
#include "product/embedded/ProductOperations.h"
#include "product/embedded/TimeEntryTable.h"

namespace kestro {
namespace {

// The timer that the conditions give counts until it is stopped; another one counts anew.
struct ConditionalTimer {
  explicit ConditionalTimer(Process& process) : since(process.platform().clock.now()) {}
  Date since;  // when it began, unless the condition says
  std::optional<PropertyList> stopped;
};

const PropertyList* conditionalTimer(Process& process) {
  const PropertyList* given = process.platform().productConditions.find("runningTimer");
  if (!given || *given == PropertyList(false)) return nullptr;
  const auto& stopped = process.shared<ConditionalTimer>().stopped;
  return stopped && *stopped == *given ? nullptr : given;
}

std::optional<std::string> textField(const PropertyListDictionary* fields, std::string_view key) {
  const PropertyList* value = fields ? fields->find(key) : nullptr;
  const auto* text = value ? value->get<std::string>() : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

RunningTimer timerOf(const PropertyList& condition, Date usualStart) {
  const auto* fields = condition.get<PropertyListDictionary>();
  const PropertyList* start = fields ? fields->find("start") : nullptr;
  const Date* startDate = start ? start->get<Date>() : nullptr;
  return {startDate ? *startDate : usualStart, textField(fields, "title"),
          textField(fields, "project")};
}

TaskActivityDescriptor descriptorOf(const RunningTimer& timer, Date end) {
  return {timer.start, std::max(timer.start, end), timer.title, timer.project};
}

// What the reading finds in the open database; absent without one, and when it fails.
template <class Reading>
auto read(Process& process, Reading reading) -> decltype(reading(std::declval<TimeEntryTable&>())) {
  DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process);
  if (!database || !database->isOpen()) return std::nullopt;
  try {
    TimeEntryTable table(database->db());
    return reading(table);
  } catch (const SQLite::Exception& failure) {
    database->noteReadFailure(failure);
    return std::nullopt;
  }
}

void write(Process& process, DatabaseWrapper::Mutation mutation) {
  if (DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process)) {
    database->mutateAsynchronouslyOrPresentError(std::move(mutation));
  }
}

void deliverStopNotification(Process& process, const TaskActivity& entry) {
  constexpr int mostComponents = 2;
  const std::string duration =
      DurationFormatterBridge::shortString(process, entry.end - entry.start, mostComponents, false);
  UserNotification notification;
  notification.title = localizedString(process, "Timer Stopped");
  notification.body = entry.title ? *entry.title + " · " + duration : duration;
  UserNotificationCenter::sharedInstance(process).withNotificationPermission(
      [&process, notification](bool isAllowed) {
        if (isAllowed) UserNotificationCenter::sharedInstance(process).deliver(notification);
      });
}

void presentEditor(Process& process, const std::string& header, const RunningTimer& timer,
                   std::function<void(const TimeEntryEditorContents&)> save) {
  const TimeEntryEditorContents contents{header, timer.title.value_or(""), timer.start,
                                         process.platform().clock.now(), timer.project};
  process.platform().timeEntryEditors.present(
      contents, editorAids(process, EditedThing::runningTimer),
      {.obtainFocus = true, .center = true},
      [save = std::move(save)](const std::optional<TimeEntryEditorContents>& saved) {
        if (saved) save(*saved);
      });
}

// By one in the database, unless it does not run any more.
void replaceConditionalTimer(Process& process, const PropertyList& condition,
                             const RunningTimer& timer) {
  const PropertyList* running = conditionalTimer(process);
  if (!running || *running != condition) return;
  process.shared<ConditionalTimer>().stopped = condition;
  write(process, [timer](SQLite::Database& mutator) { TimeEntryTable(mutator).startTimer(timer); });
}

}  // namespace

bool OngoingTaskActivityManager::hasRunningActivity() const {
  return runningTimer().has_value();
}

std::optional<RunningTimer> OngoingTaskActivityManager::runningTimer() const {
  if (const auto* condition = conditionalTimer(process_)) {
    return timerOf(*condition, process_.shared<ConditionalTimer>().since);
  }
  return read(process_, [](TimeEntryTable& table) { return table.runningTimer(); });
}

void OngoingTaskActivityManager::showEditorToStartTaskActivity() const {
  recordOperation(process_, "OngoingTaskActivityManager showEditorToStartTaskActivity");
  const RunningTimer timer{process_.platform().clock.now(), std::nullopt, std::nullopt};
  presentEditor(process_, localizedString(process_, "Start Timer"), timer,
                [&process = process_](const TimeEntryEditorContents& saved) {
                  OngoingTaskActivityManager(process).startTaskActivity(
                      {saved.start, nonEmpty(saved.title), saved.project});
                });
}

void OngoingTaskActivityManager::startTaskActivity(const RunningTimer& timer) const {
  endRunningTimer();
  write(process_,
        [timer](SQLite::Database& mutator) { TimeEntryTable(mutator).startTimer(timer); });
  StatusItemInfoProvider::sharedInstance(process_).dispatchStatusUpdateRequest(false);
}

void OngoingTaskActivityManager::stopRunningActivity(bool showNotification,
                                                     bool autoStopped) const {
  recordOperation(process_, "OngoingTaskActivityManager stopRunningActivityWithShowNotification",
                  {showNotification, autoStopped});
  const auto entry = endRunningTimer();
  if (!entry) return;
  if (showNotification) deliverStopNotification(process_, *entry);
  StatusItemInfoProvider::sharedInstance(process_).dispatchStatusUpdateRequest(false);
}

// What ran becomes a time entry. What runs when the write takes place counts: a timer that was
// ended twice in between is one entry.
std::optional<TaskActivity> OngoingTaskActivityManager::endRunningTimer() const {
  const auto timer = runningTimer();
  if (!timer) return std::nullopt;
  const Date end = process_.platform().clock.now();
  if (const auto* condition = conditionalTimer(process_)) {
    process_.shared<ConditionalTimer>().stopped = *condition;
    write(process_, [&process = process_, timer, end](SQLite::Database& mutator) {
      descriptorOf(*timer, end).createTaskActivity(process, mutator, false);
    });
  } else {
    write(process_, [&process = process_, end](SQLite::Database& mutator) {
      TimeEntryTable table(mutator);
      const auto running = table.runningTimer();
      if (!running) return;
      table.endTimer();
      descriptorOf(*running, end).createTaskActivity(process, mutator, false);
    });
  }
  return TaskActivity{0, timer->start, std::max(timer->start, end), timer->title, timer->project};
}

void OngoingTaskActivityManager::editRunningOrLatestTask() const {
  recordOperation(process_, "OngoingTaskActivityManager editRunningOrLatestTask");
  if (const auto timer = runningTimer()) return editRunningTimer(*timer);
  const auto latest = read(process_, [](TimeEntryTable& table) { return table.latest(); });
  if (latest) editTaskActivity(*latest, true);
}

// A timer that was stopped or exchanged while the editor was open stays as it is.
void OngoingTaskActivityManager::editRunningTimer(const RunningTimer& timer) const {
  const PropertyList* condition = conditionalTimer(process_);
  presentEditor(process_, localizedString(process_, "Edit Running Timer"), timer,
                [&process = process_, edits = timer.start,
                 given = condition ? std::optional(*condition)
                                   : std::nullopt](const TimeEntryEditorContents& saved) {
                  const RunningTimer edited{saved.start, nonEmpty(saved.title), saved.project};
                  if (given) return replaceConditionalTimer(process, *given, edited);
                  write(process, [edited, edits](SQLite::Database& mutator) {
                    TimeEntryTable table(mutator);
                    const auto running = table.runningTimer();
                    if (running && running->start == edits) table.startTimer(edited);
                  });
                });
}

void OngoingTaskActivityManager::updateEditRunningOrLatestTaskMenuItem(MenuItem& item) const {
  const bool isRunning = hasRunningActivity();
  item.title = localizedString(
      process_, isRunning ? localizable("Edit Running Timer…") : localizable("Edit Latest Timer…"));
  item.isHidden =
      !isRunning && !read(process_, [](TimeEntryTable& table) { return table.latest(); });
  const auto stored = process_.shared<HelperPreferences>().startTaskShortcut();
  const auto shortcut = stored ? fakeShortcutWithExtraShiftTransformer(*stored) : std::nullopt;
  item.keyEquivalent = shortcut ? shortcut->keys() : KeyEquivalent{};
}

void OngoingTaskActivityManager::editTaskActivity(const TaskActivity& activity, bool center) const {
  const TimeEntryEditorContents contents{localizedString(process_, "Edit Time Entry"),
                                         activity.title.value_or(""), activity.start, activity.end,
                                         activity.project};
  process_.platform().timeEntryEditors.present(
      contents, editorAids(process_, EditedThing::timeEntry, activity.identifier),
      {.obtainFocus = true, .center = center},
      [&process = process_,
       identifier = activity.identifier](const std::optional<TimeEntryEditorContents>& saved) {
        DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process);
        if (!saved || !database) return;
        const auto [start, end] = std::minmax(saved->start, saved->end);
        const TaskActivity edited{identifier, start, end, nonEmpty(saved->title), saved->project};
        database->mutateAsynchronouslyOrPresentError([&process, edited](SQLite::Database& mutator) {
          TimeEntryTable(mutator).update(edited);
          recordTimeEntry(process, edited);
        });
      });
}

}  // namespace kestro
