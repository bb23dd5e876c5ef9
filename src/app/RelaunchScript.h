// The shell script that ends a helper and starts it anew (docs/shell.md, "Relaunch"). Pure
// functions without state.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/Date.h"

namespace kestro {

struct RelaunchScriptArguments {
  std::int64_t processIdentifier = 0;  // the helper that is to end
  // Cut towards zero to whole seconds, then bounded: less than none and no number are none, more
  // than a day is a day (the shell makes a word for each second of it).
  Seconds delay{0};
  std::string opener;  // the program that starts the helper, given the one argument `opened`
  std::string opened;
};

// The script for a shell that expands {1..N} and knows ">&FILE", as bash does; to be given after
// "-c". Both texts reach the opener byte for byte, whatever is in them; they end at a NUL, which no
// path holds.
std::string relaunchScript(const RelaunchScriptArguments& arguments);

}  // namespace kestro
