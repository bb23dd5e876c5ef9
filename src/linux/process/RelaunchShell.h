// The shell for the relaunch script.
#pragma once

#include <string>

namespace kestro {

// `systemShell` when that is bash under another name, else "/bin/bash". Other shells do not know
// what the script needs: dash neither {1..N} nor ">&FILE", zsh under the name sh ignores braces,
// ksh takes the file after ">&" for a descriptor.
std::string relaunchShell(const std::string& systemShell);

}  // namespace kestro
