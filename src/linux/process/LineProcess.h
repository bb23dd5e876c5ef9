// A program of the helper's own that is spoken to in lines, over its standard input and output.
// Served by the run loop; main thread only.
#pragma once

#include <sys/types.h>
#include <systemd/sd-event.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "linux/process/LinuxRunLoop.h"

namespace kestro {

class LineProcess {
 public:
  using Line = std::function<void(const std::string& line)>;
  using Ended = std::function<void()>;

  // Starts the program; null when that fails. `line` gets each line without its end; `ended` is
  // called once, when the program has closed its output, has ended, or writes a line of more than
  // 16 MB. Both are called by the run loop, and may destroy the object.
  static std::unique_ptr<LineProcess> start(LinuxRunLoop& runLoop, const std::string& path,
                                            Line line, Ended ended);
  // Closes the program's input, which tells it to end, and does not wait for that.
  ~LineProcess();
  LineProcess(const LineProcess&) = delete;
  LineProcess& operator=(const LineProcess&) = delete;

  // Never waits: what does not fit is sent when the program has read.
  void send(const std::string& line);

 private:
  struct State;
  explicit LineProcess(std::shared_ptr<State> state) : state_(std::move(state)) {}

  std::shared_ptr<State> state_;
};

}  // namespace kestro
