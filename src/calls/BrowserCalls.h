// Calls in web browsers: a browser that uses audio in both directions, and what the page in front
// says about the meeting. No requests: the sampled activity has been read already.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "calls/CallMetadata.h"
#include "calls/PowerManagementAssertions.h"
#include "product/Activity.h"

namespace kestro {

class Process;

// What names the services' meeting pages. The preferences RunningCallDetector_googleMeetHost and
// RunningCallDetector_wherebyDomain stand in for the usual names; read once per process.
struct BrowserCallHosts {
  explicit BrowserCallHosts(Process& process);
  std::string googleMeet;
  std::string whereby;
};

// Absent when the application is no browser, or calls of it are not to be detected.
std::optional<ApplicationAndMetadata> browserCall(
    Process& process, const PowerManagementAssertions::PIDAndRunningApplication& application,
    const Activity& activity);

// The page's title, from the window title of a browser of that name and identifier.
std::optional<std::string> browserPageTitle(const std::optional<std::string>& windowTitle,
                                            const std::optional<std::string>& browserName,
                                            std::string_view bundleIdentifier);

}  // namespace kestro
