// Which applications are in a call, by one snapshot of the assertions. Requests are made only for
// the titles of meetings, of applications that use audio in both directions.
#pragma once

#include <vector>

#include "calls/CallMetadata.h"
#include "calls/PowerManagementAssertions.h"
#include "product/Activity.h"

namespace kestro {

class Process;

// In the order of the snapshot; TeamViewer and FaceTime, whose assertions name no audio, come last.
std::vector<ApplicationAndMetadata> applicationsInCall(Process& process,
                                                       const PowerManagementAssertions& snapshot,
                                                       Activity& activity);

}  // namespace kestro
