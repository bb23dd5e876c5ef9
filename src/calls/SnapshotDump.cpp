#include "calls/SnapshotDump.h"

#include <fmt/format.h>

#include "calls/AssertionFields.h"
#include "calls/ProcessBundle.h"
#include "foundation/PropertyListDescription.h"
#include "platform/Process.h"

namespace kestro {
namespace {

using AssertionsByProcess = PowerManagement::AssertionsByProcess;

// Those that hold assertions and those for whom some are held.
std::set<ProcessIdentifier> allPids(const AssertionsByProcess& byProcess) {
  std::set<ProcessIdentifier> pids;
  for (const auto& [pid, assertions] : byProcess) {
    pids.insert(pid);
    for (const PropertyListDictionary& assertion : assertions) {
      if (const auto other = AssertionFields(assertion).onBehalfOfPID()) pids.insert(*other);
    }
  }
  return pids;
}

PropertyList asPropertyList(const AssertionsByProcess& byProcess) {
  PropertyListDictionary dictionary;
  for (const auto& [pid, assertions] : byProcess)
    dictionary.set(std::to_string(pid), PropertyListArray(assertions.begin(), assertions.end()));
  return dictionary;
}

void dumpProcess(Process& process, ProcessIdentifier pid,
                 const PowerManagementAssertions::LogSink& logSink) {
  const auto line = [&](std::string_view label, const std::optional<std::string>& value) {
    logSink(fmt::format("{}: {}", label, value.value_or("(nil)")));
  };
  const auto application =
      process.platform().workspace.runningApplication(pid).value_or(RunningApplication{});
  const ApplicationBundle bundle = bundleAroundProcess(process, pid);
  line("PID", std::to_string(pid));
  line("bundleIdentifier", application.bundleIdentifier);
  line("localizedName", application.localizedName);
  line("executableURL", application.executablePath);
  line("alternativeBundleIdentifier", bundle.bundleIdentifier);
  line("alternativeLocalizedName", bundle.localizedName);
  logSink("");
}

}  // namespace

void dumpSnapshot(Process& process, const AssertionsByProcess& byProcess,
                  const PowerManagementAssertions& snapshot,
                  const PowerManagementAssertions::LogSink& logSink) {
  logSink("PowerManagementAssertions.pmAssertionsDictionary:");
  logSink(propertyListDescription(asPropertyList(byProcess)));
  logSink(fmt::format("\n{}", snapshot.description()));
  logSink("\nInfo for *all* processes found in the assertions dictionary:\n");
  for (const ProcessIdentifier pid : allPids(byProcess))
    dumpProcess(process, pid, logSink);
}

}  // namespace kestro
