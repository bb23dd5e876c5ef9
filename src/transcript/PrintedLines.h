// Standard output of either desktop: a stream, when there is one, and the transcript. The stream
// and the transcript must outlive it.
#pragma once

#include <ostream>

#include "platform/StandardOutput.h"
#include "platform/Transcript.h"

namespace kestro {

class PrintedLines final : public StandardOutput {
 public:
  // `stream` may be null.
  PrintedLines(std::ostream* stream, Transcript& transcript)
      : stream_(stream), transcript_(transcript) {}

  // One event of the transcript for each line of the text. The stream is flushed, so that a dump
  // that is killed shows how far it came.
  void printLine(std::string_view text) override;

 private:
  std::ostream* stream_;
  Transcript& transcript_;
};

}  // namespace kestro
