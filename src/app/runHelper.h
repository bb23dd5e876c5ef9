// The helper on a desktop, from its start to its end: what the entry point and the scene runner
// share.
#pragma once

namespace kestro {

class Desktop;

// Runs process lives until the desktop starts no more. Returns the exit status of the last.
int runHelper(Desktop& desktop);

}  // namespace kestro
