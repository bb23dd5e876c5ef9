// A transcript as JSON lines, one event a line (docs/scenes.md). Each line is flushed, so that a
// reader at the other end of a pipe follows. The stream must outlive the writer.
#pragma once

#include <ostream>

#include "platform/TranscriptWriter.h"

namespace kestro {

class JsonLinesWriter final : public TranscriptWriter {
 public:
  explicit JsonLinesWriter(std::ostream& stream) : stream_(stream) {}

  void write(Seconds time, std::string_view kind, const PropertyListDictionary& fields) override;

 private:
  std::ostream& stream_;
};

}  // namespace kestro
