#include "calls/PowerManagementDumper.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "calls/ApplicationsInCall.h"
#include "calls/DumpHeader.h"
#include "calls/PowerManagementAssertions.h"
#include "platform/Process.h"
#include "platform/StandardOutput.h"

namespace kestro {
namespace {

// As the designed platform's language prints a list of records.
std::string listDescription(const std::vector<ApplicationAndMetadata>& applications) {
  std::vector<std::string> texts;
  texts.reserve(applications.size());
  for (const auto& application : applications)
    texts.push_back(application.description());
  return fmt::format("[{}]", fmt::join(texts, ", "));
}

}  // namespace

void PowerManagementDumper::dumpPowerManagementAssertions(Process& process) {
  const auto printLine = [&](std::string_view line) {
    process.platform().standardOutput.printLine(line);
  };
  for (const std::string& line : dumpHeader(process))
    printLine(line);
  const auto snapshot = PowerManagementAssertions::current(process, printLine);
  printLine("\nCall information derived from that:");
  // No activity was sampled: titles that only one tells are missing.
  Activity activity(RunningApplication{}, ActivityDetails{});
  printLine(listDescription(applicationsInCall(process, snapshot, activity)));
}

}  // namespace kestro
