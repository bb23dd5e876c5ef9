// A snapshot of the assertions and what it was made from, for diagnostics.
#pragma once

#include "calls/PowerManagementAssertions.h"

namespace kestro {

void dumpSnapshot(Process& process, const PowerManagement::AssertionsByProcess& byProcess,
                  const PowerManagementAssertions& snapshot,
                  const PowerManagementAssertions::LogSink& logSink);

}  // namespace kestro
