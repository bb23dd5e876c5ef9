// What the embedded product layer shares with a scene: calls into it are recorded, and its
// conditions can be set.
#pragma once

#include <string_view>

#include "foundation/PropertyList.h"

namespace kestro {

class Process;

// Records a call that has no transcript kind of its own: "Class operation" and its arguments.
void recordOperation(Process& process, std::string_view operation,
                     PropertyListArray arguments = {});

// The value when it is a number.
std::optional<double> number(const PropertyList& value);

// Whether a part of the product is there; only a condition that says false takes it away.
bool isPartPresent(Process& process, std::string_view condition);

// The time from one sample to the next: one second unless a condition gives another positive
// number.
Seconds samplingInterval(Process& process);

}  // namespace kestro
