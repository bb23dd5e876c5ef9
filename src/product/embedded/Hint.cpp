#include "platform/Process.h"
#include "platform/Transcript.h"
#include "product/KestroUI.h"

namespace kestro {

void Hint::enqueueForNotification(Process& process) const {
  Transcript& transcript = process.platform().transcript;
  if (transcript.isActive()) transcript.record("hint", {{"name", name_}});
}

}  // namespace kestro
