// A transcript that stamps each event with the clock's time since its start. Silent without a
// writer.
#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "platform/Clock.h"
#include "platform/TranscriptWriter.h"

namespace kestro {

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
