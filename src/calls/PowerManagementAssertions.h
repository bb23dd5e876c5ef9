// One snapshot of the power-management assertions that say which applications use audio: what tells
// that somebody is in a call. A plain value, taken fresh for every detection step. Main thread
// only.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/PowerManagement.h"
#include "platform/Workspace.h"

namespace kestro {

class Process;

struct PowerManagementAssertions {
  // A field is absent where the assertion has no such value, or one of another type.
  struct Assertion {
    ProcessIdentifier pid = 0;  // whom it is held for
    std::optional<std::string> processName;
    std::optional<std::string> type;
    std::optional<std::string> name;
    std::optional<Date> startedAt;
    std::optional<std::set<std::string>> resourcesUsed;

    std::string description() const;
  };

  // A process that uses audio in both directions. Where the process itself is no application with
  // an identifier, that of the bundle around its executable stands in.
  struct PIDAndRunningApplication {
    ProcessIdentifier pid = 0;
    std::optional<RunningApplication> application;
    std::optional<std::string> bundleIdentifier;
    std::optional<std::string> applicationName;
    bool audioInAndOutAssertionsHaveBeenRecordedSeparately = false;

    std::string description() const;
  };

  using LogSink = std::function<void(std::string_view line)>;

  // The assertions of all processes now; empty when the platform cannot tell. Writes what it saw to
  // the sink, line by line.
  static PowerManagementAssertions current(Process& process, const LogSink& logSink = nullptr);

  std::string description() const;

  std::vector<Assertion> assertions;
  std::set<ProcessIdentifier> pidsOfAppsWithAudioOutAssertion;
  std::set<ProcessIdentifier> pidsOfAppsWithAudioInAssertion;
  std::set<ProcessIdentifier> pidsOfAppsWithBothAssertions;  // one assertion for both directions
  // One a process that has both directions, in ascending order of processes.
  std::vector<PIDAndRunningApplication> appsWithMeetingRelatedPMAssertions;
};

}  // namespace kestro
