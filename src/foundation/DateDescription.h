// Dates for people who read dumps and reports.
#pragma once

#include <string>

#include "foundation/Date.h"

namespace kestro {

// "2026-03-02 09:00:00 +0000": whole seconds, rounded down, in UTC.
std::string dateDescription(Date date);

}  // namespace kestro
