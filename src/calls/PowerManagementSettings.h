// How assertions are judged. Preferences, read once per process.
#pragma once

#include "foundation/Date.h"

namespace kestro {

class Process;

struct PowerManagementSettings {
  explicit PowerManagementSettings(Process& process);

  bool suppressUSBAudioDevices;
  bool treatWebRTCLikeAudioInAndOutAssertions;
  bool treatOnACallLikeAudioInAndOutAssertions;
  Seconds maximumPMAssertionAge;
  bool dumpRecordedAssertions;
};

}  // namespace kestro
