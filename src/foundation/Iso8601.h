// Dates as texts: ISO 8601 in UTC.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/Date.h"

namespace kestro {

// "2026-03-02T09:00:00Z"; with a fraction of up to nine digits only when there is one.
std::string iso8601(Date date);

// Reads that form, or one with an offset ("+01:00") in place of the Z. Absent for anything else and
// for years before 1970 or after 2200.
std::optional<Date> parseIso8601(std::string_view text);

}  // namespace kestro
