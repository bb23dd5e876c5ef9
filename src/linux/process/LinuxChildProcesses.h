// Programs started with posix_spawn, without a shell. Main thread only.
#pragma once

#include "platform/ChildProcesses.h"

namespace kestro {

class LinuxChildProcesses final : public ChildProcesses {
 public:
  std::variant<ExitStatus, LaunchFailure> runAndWait(
      const std::string& path, const std::vector<std::string>& arguments) override;
  // In a session of its own; a thread waits for its end, so that it is no zombie while the helper
  // still runs.
  std::optional<LaunchFailure> startDetached(const std::string& path,
                                             const std::vector<std::string>& arguments) override;
};

}  // namespace kestro
