// Finds the accessibility root of a process. Main thread only.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "linux/accessibility/AtspiReader.h"

namespace kestro {

// Toolkits that need to be known because they answer unlike the others.
enum class AtspiToolkit { other, gtk4, chromium };

class AtspiApplications {
 public:
  AtspiApplications(AtspiConnection& connection, AtspiReader& reader, SampleGeneration& generation)
      : connection_(connection), reader_(reader), generation_(generation) {}

  // cannotComplete: the process is stopped, or lets its requests time out, or shows no tree. Costs
  // no request for a process that is known, and one a sample for one that shows no tree.
  AccessibilityResult<AtspiObject> root(ProcessIdentifier process);
  // Call when the root has not answered. True when it was not just slow, so that it is worth asking
  // for another root.
  bool forgetIfGone(ProcessIdentifier process);

  // At most two requests for an application that is asked about first, none later.
  AtspiToolkit toolkit(const AtspiObject& object);

  // What is remembered under names of the bus is worth nothing once this number has changed.
  std::uint64_t connectionNumber() const { return connection_.connectionNumber(); }

 private:
  void startGeneration();
  std::optional<AtspiToolkit> readToolkit(const AtspiObject& root);
  void findRoots();
  void readProcesses(const std::vector<AtspiObject>& roots);
  void forgetAllExcept(const std::vector<AtspiObject>& roots);

  AtspiConnection& connection_;
  AtspiReader& reader_;
  SampleGeneration& generation_;
  std::uint64_t connectionNumber_ = 0;
  std::uint64_t checkedIn_ = 0;
  bool hasListedRoots_ = false;                // in this generation
  std::map<ProcessIdentifier, bool> stopped_;  // in this generation
  std::map<ProcessIdentifier, AtspiObject> roots_;
  std::map<std::string, ProcessIdentifier> processes_;  // by unique bus name
  std::map<std::string, AtspiToolkit> toolkits_;        // by unique bus name
};

}  // namespace kestro
