// A desktop that helper processes live on, one after the other. Each backend has one; only the
// entry point and the test runner choose between them.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "platform/TranscriptWriter.h"

namespace kestro {

struct DesktopOptions {
  // False: a process that looks at the desktop and ends, beside the helper that serves the session.
  bool servesSession = true;
  std::vector<std::string> arguments;                  // of the command line, after the executable
  std::optional<std::filesystem::path> dataDirectory;  // absent: the backend's own choice
  std::unique_ptr<TranscriptWriter> transcriptWriter;  // null: no transcript
  std::ostream* standardOutput = nullptr;  // null: what is printed is only in the transcript
  std::ostream* standardError = nullptr;   // of a scene's system log; null: only in the transcript
};

class Desktop {
 public:
  virtual ~Desktop() = default;

  virtual Platform& platform() = 0;

  // Called after a process life has ended. True when another is to start on this desktop, now.
  virtual bool beginNextProcessLife() = 0;
};

}  // namespace kestro
