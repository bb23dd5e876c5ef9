// The diagnostic dump of the power-management assertions and of the calls that follow from them.
#pragma once

namespace kestro {

class Process;

class PowerManagementDumper {
 public:
  // To standard output.
  static void dumpPowerManagementAssertions(Process& process);
};

}  // namespace kestro
