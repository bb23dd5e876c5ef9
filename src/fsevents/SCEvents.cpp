#include "fsevents/SCEvents.h"

#include <fmt/format.h>

#include <algorithm>

#include "foundation/PropertyListDescription.h"
#include "platform/Clock.h"
#include "platform/Process.h"

namespace kestro {
namespace {

std::string withoutSlashAtEnd(std::string path) {
  if (path.ends_with('/')) path.pop_back();
  return path;
}

// As the designed platform writes a list, or that there is none.
std::string listDescription(const std::optional<std::vector<std::string>>& paths) {
  return paths ? propertyListDescription(*paths) : "(null)";
}

std::optional<std::vector<std::string>> texts(const PropertyList& value) {
  const auto* members = value.get<PropertyListArray>();
  if (!members) return std::nullopt;
  std::vector<std::string> list;
  for (const PropertyList& member : *members) {
    if (const auto* text = member.get<std::string>()) list.push_back(*text);
  }
  return list;
}

bool isOn(const PropertyList* value) {
  const bool* flag = value ? value->get<bool>() : nullptr;
  return flag && *flag;
}

}  // namespace

SCEvents& SCEvents::sharedPathWatcher(Process& process) {
  return process.shared<SCEvents>();
}

SCEvents::SCEvents(Process& process)
    : process_(process),
      requests_(process.platform().notificationCenter.observe(
          helperNotification::watcherRequest,
          [this](const PropertyListDictionary& request) { handleRequest(request); })) {}

bool SCEvents::startWatchingPaths(std::vector<std::string> paths) {
  if (paths.empty() || isWatchingPaths()) return false;
  watchedPaths_ = std::move(paths);
  stream_ = process_.platform().fileEvents.makeStream(
      *watchedPaths_, notificationLatency_,
      [this](const std::vector<FileEvent>& events) { deliver(events); });
  isWatchingPaths_ = true;
  return true;
}

bool SCEvents::stopWatchingPaths() {
  if (!isWatchingPaths()) return false;
  isWatchingPaths_ = false;
  stream_.reset();
  return true;
}

bool SCEvents::flushEventStreamSync() {
  if (!isWatchingPaths()) return false;
  if (stream_) stream_->flushSync();
  return true;
}

bool SCEvents::flushEventStreamAsync() {
  if (!isWatchingPaths()) return false;
  if (stream_) stream_->flushAsync();
  return true;
}

void SCEvents::deliver(const std::vector<FileEvent>& events) {
  for (std::size_t index = 0; index < events.size(); ++index) {
    const FileEvent& reported = events[index];
    if (isIgnored(reported.path)) continue;
    const SCEvent event{reported.identifier, process_.platform().clock.now(),
                        withoutSlashAtEnd(reported.path), reported.flags};
    if (delegate_) delegate_->pathWatcherEventOccurred(*this, event);
    if (index + 1 == events.size()) lastEvent_ = event;
  }
}

bool SCEvents::isIgnored(const std::string& path) const {
  if (!excludedPaths_) return false;
  return std::ranges::any_of(*excludedPaths_, [&](const std::string& excluded) {
    // An empty text names no path; as a prefix it would exclude them all.
    if (excluded.empty()) return false;
    return path == excluded || (ignoreEventsFromSubDirs_ && path.starts_with(excluded));
  });
}

void SCEvents::handleRequest(const PropertyListDictionary& request) {
  if (const PropertyList* value = request.find("excludedPaths")) {
    if (const auto paths = texts(*value)) setExcludedPaths(*paths);
  }
  if (const PropertyList* value = request.find("ignoreEventsFromSubDirs")) {
    if (const bool* ignores = value->get<bool>()) setIgnoreEventsFromSubDirs(*ignores);
  }
  if (isOn(request.find("stop"))) stopWatchingPaths();
}

std::string SCEvents::streamDescription() const {
  if (stream_) return stream_->description();
  return "The event stream is not running. Start it by calling: startWatchingPaths:";
}

std::string SCEvents::description() const {
  return fmt::format("<SCEvents {{ watchedPaths = {}, excludedPaths = {} }} >",
                     listDescription(watchedPaths_), listDescription(excludedPaths_));
}

std::string SCEvent::description() const {
  // Identifiers are shown as signed numbers, which the watcher's users have always seen.
  return fmt::format("<SCEvent {{ eventId = {}, eventPath = {}, eventFlag = {} }} >",
                     static_cast<std::int64_t>(eventId), eventPath, eventFlag);
}

}  // namespace kestro
