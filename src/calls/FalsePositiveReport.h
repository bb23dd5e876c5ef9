// The report of a call that was none: a support request with the assertions attached.
#pragma once

#include <optional>
#include <string>

#include "calls/CallMetadata.h"

namespace kestro {

class Process;

// What is not known of the call is "(nil)" in the request. The assertions are those of now.
void reportFalsePositive(Process& process, const std::optional<std::string>& bundleIdentifier,
                         const std::optional<CallProperties>& call);

}  // namespace kestro
