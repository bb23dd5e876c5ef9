#include "calls/DumpHeader.h"

#include "foundation/DateDescription.h"
#include "platform/Clock.h"
#include "platform/Process.h"

namespace kestro {

std::vector<std::string> dumpHeader(Process& process) {
  return {"Dump created at: " + dateDescription(process.platform().clock.now()),
          "macOS Version: " + process.platform().operatingSystemVersion};
}

}  // namespace kestro
