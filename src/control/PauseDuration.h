// How long a pause is to be, as people write it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "foundation/TimeZone.h"

namespace kestro {

// Seconds: "90s", "30m", "1h", "1h30m", or "tomorrow", which is until the next midnight. Absent for
// anything else, also for no time at all and for more than 100,000 hours.
std::optional<std::uint32_t> parsePauseDuration(std::string_view text, Date now,
                                                const TimeZone& timeZone);

}  // namespace kestro
