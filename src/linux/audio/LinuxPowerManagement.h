// Linux has no such assertions; what stands for them here, the audio streams of processes, is not
// read yet. So no call is ever detected on the live desktop.
#pragma once

#include "platform/PowerManagement.h"

namespace kestro {

class LinuxPowerManagement final : public PowerManagement {
 public:
  std::optional<AssertionsByProcess> assertionsByProcess() override { return std::nullopt; }
};

}  // namespace kestro
