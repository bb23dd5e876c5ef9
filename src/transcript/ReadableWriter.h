// A transcript for people at a terminal: a line for every change of activity and for what else the
// helper did that is worth seeing. The stream must outlive the writer.
#pragma once

#include <optional>
#include <ostream>

#include "foundation/TimeZone.h"
#include "platform/TranscriptWriter.h"

namespace kestro {

class ReadableWriter final : public TranscriptWriter {
 public:
  // `start` is the moment from which events count their time.
  ReadableWriter(std::ostream& stream, Date start, TimeZone timeZone)
      : stream_(stream), start_(start), timeZone_(std::move(timeZone)) {}

  void write(Seconds time, std::string_view kind, const PropertyListDictionary& fields) override;

 private:
  void writeActivity(Seconds time, PropertyListDictionary fields);
  void writePrinted(const PropertyListDictionary& fields);
  void writeLine(Seconds time, std::string_view subject, std::string_view text);

  std::ostream& stream_;
  Date start_;
  TimeZone timeZone_;
  // What the latest activity line was about; empty for a line that says there was nothing to track.
  std::optional<PropertyListDictionary> shownActivity_;
};

}  // namespace kestro
