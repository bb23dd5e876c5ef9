// What the helper was started for, as its arguments say.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestro {

struct NormalLaunch {};
struct CrashRecoveryLaunch {};
struct AssertionDumpLaunch {};
struct WindowDumpLaunch {
  std::string bundleIdentifier;
  std::optional<std::string> searchQuery;
};
struct IconDumpLaunch {
  std::string bundleIdentifier;
};

using Launch = std::variant<NormalLaunch, CrashRecoveryLaunch, AssertionDumpLaunch,
                            WindowDumpLaunch, IconDumpLaunch>;

// `arguments` without the executable. Only the first can be a switch; one that lacks what it needs
// counts as none.
Launch launchOf(const std::vector<std::string>& arguments);

// Whether the process only looks and ends.
bool isDump(const Launch& launch);

}  // namespace kestro
