// One relaunch: a detached shell command waits, ends this process and starts the helper anew. Its
// steps are apart because a pause lies between them, which its caller takes in its own way. Main
// thread only.
#pragma once

#include <optional>

#include "foundation/Date.h"
#include "foundation/PropertyList.h"

namespace kestro {

class Process;

class Relaunch {
 public:
  // The pauses after `request` and after `report`.
  static constexpr Seconds pauseAfterRequest{1};
  static constexpr Seconds pauseAfterReport{2};

  // Starts the shell command, and has the tracking loop prepare itself with the run loop's next
  // task. Absent when the user's preferences refuse relaunches.
  static std::optional<Relaunch> request(Process& process, Seconds delay,
                                         PropertyListDictionary attributes);
  // Tells what came of the start.
  void report();
  void prepare();

 private:
  Relaunch(Process& process, PropertyListDictionary attributes)
      : process_(process), attributes_(std::move(attributes)) {}
  void start(Seconds delay);

  Process& process_;
  PropertyListDictionary attributes_;
  std::optional<std::string> launchError_;
};

}  // namespace kestro
