#include "transcript/makeTranscriptWriter.h"

#include "transcript/JsonLinesWriter.h"
#include "transcript/ReadableWriter.h"

namespace kestro {

std::unique_ptr<TranscriptWriter> makeTranscriptWriter(std::ostream& stream,
                                                       TranscriptFormat format, Date start,
                                                       TimeZone timeZone) {
  if (format == TranscriptFormat::jsonLines) return std::make_unique<JsonLinesWriter>(stream);
  return std::make_unique<ReadableWriter>(stream, start, std::move(timeZone));
}

}  // namespace kestro
