#include "product/embedded/EditorAids.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <algorithm>

#include "platform/Clock.h"
#include "platform/LocalizedStrings.h"
#include "platform/Process.h"
#include "product/DatabaseWrapper.h"
#include "product/embedded/TimeEntryTable.h"

namespace kestro {
namespace {

constexpr int mostTitles = 500;

// Calls `reading` with the table of the open database; absent without one, and when it fails.
template <class Reading>
auto readTable(Process& process, Reading reading)
    -> std::optional<decltype(reading(std::declval<TimeEntryTable&>()))> {
  DatabaseWrapper* database = DatabaseWrapper::openSharedInstance(process);
  if (!database || !database->isOpen()) return std::nullopt;
  try {
    TimeEntryTable table(database->db());
    return reading(table);
  } catch (const SQLite::Exception& failure) {
    database->noteReadFailure(failure);
    return std::nullopt;
  }
}

std::string refusal(Process& process, const TaskActivity& covered) {
  if (!covered.title) {
    return localizedString(process, "Another time entry already covers part of this time.");
  }
  return localizedFormat(process, "The time entry “%@” already covers part of this time.",
                         *covered.title);
}

std::optional<std::string> checkTime(Process& process, Date start, Date end,
                                     std::optional<std::int64_t> edited) {
  if (end < start) return localizedString(process, "The end must not be before the start.");
  const auto covered = readTable(
      process, [&](TimeEntryTable& table) { return table.entryWithin(start, end, edited); });
  if (!covered || !*covered) return std::nullopt;
  return refusal(process, **covered);
}

}  // namespace

TimeEntryEditorAids editorAids(Process& process, EditedThing thing,
                               std::optional<std::int64_t> edited) {
  TimeEntryEditorAids aids;
  aids.hasEnd = thing == EditedThing::timeEntry;
  aids.projects = readTable(process, [](TimeEntryTable& table) {
                    return table.projectNames();
                  }).value_or(std::vector<std::string>());
  aids.titles = readTable(process, [](TimeEntryTable& table) {
                  return table.latestTitles(mostTitles);
                }).value_or(std::vector<std::string>());
  aids.check = [&process, thing, edited](const TimeEntryEditorContents& contents) {
    // A timer that is to begin later covers nothing yet.
    const Date end = thing == EditedThing::timeEntry
                         ? contents.end
                         : std::max(contents.start, process.platform().clock.now());
    return checkTime(process, contents.start, end, edited);
  };
  return aids;
}

}  // namespace kestro
