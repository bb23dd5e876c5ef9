#include "calls/FalsePositiveReport.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "calls/CallEvents.h"
#include "calls/DumpHeader.h"
#include "calls/PowerManagementAssertions.h"
#include "platform/LocalizedStrings.h"
#include "platform/Process.h"
#include "product/KestroUI.h"

namespace kestro {
namespace {

constexpr std::string_view bodyFormat = localizable(
    "App Name: %@\nApp ID: %@\nService Name: %@\nMeeting Title: %@\nCall Duration: %f s\n\nPlease "
    "describe what you were doing when the call notification appeared, and whether your Mac's "
    "speakers and/or microphone were active:\n\n");

std::string bodyOf(Process& process, const std::optional<std::string>& bundleIdentifier,
                   const std::optional<CallProperties>& call) {
  const CallMetadata metadata = call ? call->metadata : CallMetadata{};
  const double duration = call ? call->duration().count() : -1;
  return localizedFormat(
      process, bodyFormat,
      {orNil(metadata.appName), orNil(bundleIdentifier), orNil(metadata.serviceName),
       orNil(metadata.meetingTitle), fmt::format("{:.6f}", duration)});
}

}  // namespace

void reportFalsePositive(Process& process, const std::optional<std::string>& bundleIdentifier,
                         const std::optional<CallProperties>& call) {
  std::vector<std::string> lines = dumpHeader(process);
  PowerManagementAssertions::current(process,
                                     [&](std::string_view line) { lines.emplace_back(line); });
  SupportRequests::createRequest(process, bodyOf(process, bundleIdentifier, call),
                                 {{fmt::format("{}", fmt::join(lines, "\n")), "PMAssertions.txt"}});
}

}  // namespace kestro
