// Other programs that the helper runs.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestro {

struct ExitStatus {
  int code = 0;  // 128 plus the signal's number when a signal ended the program
};

struct LaunchFailure {
  std::string reason;
};

class ChildProcesses {
 public:
  virtual ~ChildProcesses() = default;

  // Runs the program at `path` (no shell, no search path) and waits until it exits. The wait is
  // bounded: a program that does not end is killed after ten seconds.
  virtual std::variant<ExitStatus, LaunchFailure> runAndWait(
      const std::string& path, const std::vector<std::string>& arguments) = 0;

  // Starts the program at `path` and returns at once; absent when it was started. It outlives the
  // helper and keeps only its standard input and output. What it writes to its standard error goes
  // to a pipe that nobody reads, and never makes it wait or ends it.
  virtual std::optional<LaunchFailure> startDetached(const std::string& path,
                                                     const std::vector<std::string>& arguments) = 0;
};

}  // namespace kestro
