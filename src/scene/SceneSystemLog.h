// The system log of a scripted desktop: lines of the transcript, and of standard error where there
// is none. Main thread only; what it refers to must outlive it.
#pragma once

#include <ostream>

#include "platform/SystemLog.h"
#include "platform/Transcript.h"

namespace kestro {

class SceneSystemLog final : public SystemLog {
 public:
  // `standardError`: null: nowhere.
  SceneSystemLog(Transcript& transcript, std::ostream* standardError)
      : transcript_(transcript), standardError_(standardError) {}

  void write(std::string_view line) override {
    transcript_.record("log", {{"text", line}});
    if (standardError_) *standardError_ << line << std::endl;
  }

 private:
  Transcript& transcript_;
  std::ostream* standardError_;
};

}  // namespace kestro
