// The system log of a scripted desktop: lines of the transcript.
#pragma once

#include "platform/SystemLog.h"
#include "platform/Transcript.h"

namespace kestro {

class SceneSystemLog final : public SystemLog {
 public:
  explicit SceneSystemLog(Transcript& transcript) : transcript_(transcript) {}

  void write(std::string_view line) override { transcript_.record("log", {{"text", line}}); }

 private:
  Transcript& transcript_;
};

}  // namespace kestro
