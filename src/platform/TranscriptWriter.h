// Where transcript events go, once they carry their time.
#pragma once

#include <memory>
#include <string_view>

#include "platform/Clock.h"
#include "platform/Transcript.h"

namespace kestro {

class TranscriptWriter {
 public:
  virtual ~TranscriptWriter() = default;
  // `time` is counted from the start of the desktop, not of the process life.
  virtual void write(Seconds time, std::string_view kind, const PropertyListDictionary& fields) = 0;
};

// A transcript that stamps each event with the clock's time since `start`. Silent without a writer.
class TimedTranscript final : public Transcript {
 public:
  TimedTranscript(const Clock& clock, Date start, std::unique_ptr<TranscriptWriter> writer)
      : clock_(clock), start_(start), writer_(std::move(writer)) {}

  bool isActive() const override { return writer_ != nullptr; }
  void record(std::string_view kind, PropertyListDictionary fields) override {
    if (writer_) writer_->write(clock_.now() - start_, kind, fields);
  }

 private:
  const Clock& clock_;
  Date start_;
  std::unique_ptr<TranscriptWriter> writer_;
};

}  // namespace kestro
