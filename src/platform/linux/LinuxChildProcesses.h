// Programs started with posix_spawn, without a shell. Main thread only.
#pragma once

#include "platform/ChildProcesses.h"

namespace kestro {

class LinuxChildProcesses final : public ChildProcesses {
 public:
  std::variant<ExitStatus, LaunchFailure> runAndWait(
      const std::string& path, const std::vector<std::string>& arguments) override;
};

}  // namespace kestro
