#include "calls/PowerManagementDumper.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <iostream>

#include "calls/ApplicationsInCall.h"
#include "calls/DumpHeader.h"
#include "calls/PowerManagementAssertions.h"

namespace kestro {
namespace {

void printLine(std::string_view line) {
  std::cout << line << '\n';
}

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
  for (const std::string& line : dumpHeader(process))
    printLine(line);
  const auto snapshot = PowerManagementAssertions::current(process, printLine);
  printLine("\nCall information derived from that:");
  // No activity was sampled: titles that only one tells are missing.
  const Activity activity(RunningApplication{}, ActivityDetails{});
  printLine(listDescription(applicationsInCall(process, snapshot, activity)));
  std::cout << std::flush;
}

}  // namespace kestro
