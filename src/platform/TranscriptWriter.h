// Where transcript events go, once they carry their time.
#pragma once

#include <string_view>

#include "foundation/Date.h"
#include "platform/Transcript.h"

namespace kestro {

class TranscriptWriter {
 public:
  virtual ~TranscriptWriter() = default;
  // `time` is counted from the start of the desktop, not of the process life.
  virtual void write(Seconds time, std::string_view kind, const PropertyListDictionary& fields) = 0;
};

}  // namespace kestro
