#include "app/LaunchSwitches.h"

namespace kestro {
namespace {

std::optional<std::string> searchQueryOf(const std::vector<std::string>& arguments) {
  constexpr std::size_t place = 2;
  if (arguments.size() <= place || arguments[place].starts_with('-')) return std::nullopt;
  return arguments[place];
}

}  // namespace

Launch launchOf(const std::vector<std::string>& arguments) {
  if (arguments.empty()) return NormalLaunch{};
  const std::string& name = arguments.front();
  if (name == "--fromCrashRecovery") return CrashRecoveryLaunch{};
  if (name == "--dumpPMAssertions") return AssertionDumpLaunch{};
  if (arguments.size() < 2) return NormalLaunch{};
  const std::string& bundleIdentifier = arguments[1];
  if (name == "--dumpApplicationWindows") {
    return WindowDumpLaunch{bundleIdentifier, searchQueryOf(arguments)};
  }
  if (name == "--dumpApplicationIcon") return IconDumpLaunch{bundleIdentifier};
  return NormalLaunch{};
}

bool isDump(const Launch& launch) {
  return !std::holds_alternative<NormalLaunch>(launch) &&
         !std::holds_alternative<CrashRecoveryLaunch>(launch);
}

}  // namespace kestro
