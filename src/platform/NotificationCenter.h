// Notifications by name, inside the process and from the session: who observes a name is called
// when it is posted. Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/PropertyList.h"

namespace kestro {

// Names that the session posts.
namespace sessionNotification {
constexpr std::string_view activeSpaceDidChange = "NSWorkspaceActiveSpaceDidChangeNotification";
constexpr std::string_view interfaceThemeChanged = "AppleInterfaceThemeChangedNotification";
}  // namespace sessionNotification

// Names of the product's libraries that a scripted desktop may post in their place.
namespace productNotification {
// The shutdown's flush and sync are done.
constexpr std::string_view flushAndSyncFinished = "ActivityWriter.flushAndSyncFinished";
// The tracking loop wants a relaunch: "delay" in seconds, "attributes".
constexpr std::string_view relaunchWanted = "InfoLogger.relaunchWanted";
// A call has begun, or the last one has ended.
constexpr std::string_view runningCallsDidChange = "InfoLogger.runningCallsDidChange";
// A sync takes place.
constexpr std::string_view syncRequested = "SyncManager.syncRequested";
}  // namespace productNotification

// Names that other parts of the helper, or a scripted desktop in their place, post.
namespace helperNotification {
// Asks the shared watcher of files for "excludedPaths", "ignoreEventsFromSubDirs", "stop".
constexpr std::string_view watcherRequest = "SCEvents.request";
}  // namespace helperNotification

class NotificationCenter {
 public:
  using Observer = std::function<void(const PropertyListDictionary& userInfo)>;

  // Observes until it is destroyed, which must be before the centre is.
  class Observation {
   public:
    Observation() = default;
    Observation(Observation&&) noexcept;
    Observation& operator=(Observation&&) noexcept;
    ~Observation();

   private:
    friend class NotificationCenter;
    Observation(NotificationCenter& center, std::shared_ptr<const Observer> observer);
    void end();

    NotificationCenter* center_ = nullptr;
    std::shared_ptr<const Observer> observer_;
  };

  [[nodiscard]] Observation observe(std::string_view name, Observer observer);
  // Calls the observers of this name, in the order in which they began.
  void post(std::string_view name, const PropertyListDictionary& userInfo = {});

 private:
  struct Entry {
    std::string name;
    std::shared_ptr<const Observer> observer;
  };
  void remove(const std::shared_ptr<const Observer>& observer);

  std::vector<Entry> entries_;
};

}  // namespace kestro
