// A call's properties as JSON, as notifications carry them. Dates are seconds since 2001-01-01 UTC,
// the designed platform's default form, so that notifications of an earlier run can be read.
#pragma once

#include <optional>

#include "calls/CallMetadata.h"
#include "foundation/PropertyList.h"

namespace kestro {

Data encodedCallProperties(const CallProperties& call);
// Absent when the data is no such JSON: a date or the flag is missing, a field has another type, or
// a date is beyond what can be counted.
std::optional<CallProperties> decodedCallProperties(const Data& data);

}  // namespace kestro
