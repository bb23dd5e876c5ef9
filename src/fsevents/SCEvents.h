// Watches paths and hands every change below them to one listener. There is one watcher per process
// life. Main thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fsevents/SCEvent.h"
#include "platform/FileEvents.h"
#include "platform/NotificationCenter.h"

namespace kestro {

class Process;
class SCEvents;

class SCEventListenerProtocol {
 public:
  virtual ~SCEventListenerProtocol() = default;
  virtual void pathWatcherEventOccurred(SCEvents& watcher, const SCEvent& event) = 0;
};

class SCEvents {
 public:
  static SCEvents& sharedPathWatcher(Process& process);

  // Use sharedPathWatcher.
  explicit SCEvents(Process& process);

  // False, and nothing changes, when the list is empty or it watches already.
  bool startWatchingPaths(std::vector<std::string> paths);
  // These tell whether a stream was running.
  bool stopWatchingPaths();
  bool flushEventStreamSync();
  bool flushEventStreamAsync();
  // The stream's own description, or that there is none.
  std::string streamDescription() const;
  std::string description() const;

  bool isWatchingPaths() const { return isWatchingPaths_; }
  // Absent before the first start.
  const std::optional<std::vector<std::string>>& watchedPaths() const { return watchedPaths_; }
  // The last event of the latest delivery whose last event was not ignored.
  const std::optional<SCEvent>& lastEvent() const { return lastEvent_; }

  // Not owned; null: none.
  void setDelegate(SCEventListenerProtocol* delegate) { delegate_ = delegate; }
  // Events of these paths are ignored: exactly, or where a path begins with one of them, while
  // ignoreEventsFromSubDirs is on. That is a test of the texts: /a/b also ignores /a/bc.
  void setExcludedPaths(std::vector<std::string> paths) { excludedPaths_ = std::move(paths); }
  // Absent until they are set.
  const std::optional<std::vector<std::string>>& excludedPaths() const { return excludedPaths_; }
  void setIgnoreEventsFromSubDirs(bool ignores) { ignoreEventsFromSubDirs_ = ignores; }
  bool ignoreEventsFromSubDirs() const { return ignoreEventsFromSubDirs_; }
  // How long changes are held back; of the next stream.
  void setNotificationLatency(Seconds latency) { notificationLatency_ = latency; }
  Seconds notificationLatency() const { return notificationLatency_; }

 private:
  void deliver(const std::vector<FileEvent>& events);
  bool isIgnored(const std::string& path) const;
  void handleRequest(const PropertyListDictionary& request);

  Process& process_;
  SCEventListenerProtocol* delegate_ = nullptr;
  bool ignoreEventsFromSubDirs_ = true;
  Seconds notificationLatency_{3.0};
  bool isWatchingPaths_ = false;
  std::optional<std::vector<std::string>> watchedPaths_;
  std::optional<std::vector<std::string>> excludedPaths_;
  std::optional<SCEvent> lastEvent_;
  NotificationCenter::Observation requests_;  // of other parts of the program
  std::unique_ptr<FileEventStream> stream_;   // null while there is none
};

}  // namespace kestro
