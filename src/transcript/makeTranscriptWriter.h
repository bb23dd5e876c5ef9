// Makes the transcript writers.
#pragma once

#include <memory>
#include <ostream>

#include "foundation/TimeZone.h"
#include "platform/TranscriptWriter.h"

namespace kestro {

enum class TranscriptFormat { jsonLines, readable };

// `start` and `timeZone` are for clock times in the readable form. The stream must outlive the
// writer.
std::unique_ptr<TranscriptWriter> makeTranscriptWriter(std::ostream& stream,
                                                       TranscriptFormat format, Date start,
                                                       TimeZone timeZone);

}  // namespace kestro
