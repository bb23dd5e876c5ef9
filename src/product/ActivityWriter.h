// Keeps the activities of one process life in the database. Owned by the database wrapper; main
// thread only.
//
// Neighbouring samples that are equal in every field become one row. Its end is the last sample's
// time plus the sampling interval, but never later than the next different sample. A pause too long
// to be one late sample, a sample without an activity and a clock that goes back end the row, so
// time asleep is not counted. Rows never overlap, also after the clock went back: time that a row
// covers already is not recorded again.
//
// Rows are held back for at most ten seconds and then written in one transaction. While the
// database refuses, they are kept in memory, up to a bound, and tried again. On damage, and when
// somebody has deleted or replaced the database, they go into a new one. A row that somebody has
// deleted while it grows is written once more. Samples that are taken while it refuses and after
// the clock went back are not recorded: only the database knows which time is free.
#pragma once

#include <memory>

#include "foundation/Date.h"
#include "product/SyncManager.h"
#include "product/TimeEntries.h"

namespace kestro {

class Activity;
class DatabaseWrapper;
class Process;

class ActivityWriter {
 public:
  // The database must outlive the writer. Throws SQLite::Exception when the database lacks the
  // tables of this version.
  ActivityWriter(Process& process, DatabaseWrapper& database);
  ~ActivityWriter();
  ActivityWriter(const ActivityWriter&) = delete;
  ActivityWriter& operator=(const ActivityWriter&) = delete;

  const OngoingTaskActivityManager& ongoingTaskActivityManager() const {
    return taskActivityManager_;
  }

  // Posted when the flush and sync of a shutdown are done.
  static constexpr std::string_view flushAndSyncFinishedNotification =
      productNotification::flushAndSyncFinished;

  // What is done after each sync, instead of what was before; null: nothing.
  void setPostSyncUpdater(std::unique_ptr<PostSyncUpdater> updater);
  PostSyncUpdater* postSyncUpdater() const { return postSyncUpdater_.get(); }

  // One sample, taken at `time`.
  void write(Date time, const Activity& activity);
  // From `time` on nothing is tracked: a sample without an activity, or the end of tracking.
  void writeNoActivity(Date time);
  // Gives up everything that was made of the database, which is about to be closed. The next rows,
  // the open one among them, are written as a whole to the one that is open then.
  void releaseDatabase();
  // Writes what is held back for the last time; what the database refuses is lost, and counted in
  // the log.
  void close();
  // Writes now what is held back. False when the database refused; the reason is logged once per
  // outage.
  bool flush();

 private:
  struct State;
  std::unique_ptr<State> state_;
  OngoingTaskActivityManager taskActivityManager_;
  std::unique_ptr<PostSyncUpdater> postSyncUpdater_;
};

}  // namespace kestro
