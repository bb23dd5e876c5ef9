// How a dump of the assertions begins.
#pragma once

#include <string>
#include <vector>

namespace kestro {

class Process;

// When it was made, and on which system.
std::vector<std::string> dumpHeader(Process& process);

}  // namespace kestro
