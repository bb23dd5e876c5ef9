// The helper's status, for people and for programs.
#pragma once

#include <optional>
#include <string>

#include "control/HelperClient.h"

namespace kestro {

// A few lines that are read at a glance.
std::string statusText(const HelperStatus& status, std::int64_t now);
// One line; absent: no helper is running. Its keys are stable.
std::string statusJson(const std::optional<HelperStatus>& status);

}  // namespace kestro
