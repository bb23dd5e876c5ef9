#include "app/runHelper.h"

#include "app/KSHelperAppDelegate.h"
#include "platform/Desktop.h"
#include "platform/RunLoop.h"
#include "platform/Transcript.h"

namespace kestro {
namespace {

int runProcessLife(Platform& platform) {
  Process process(platform);
  KSHelperAppDelegate delegate(process);
  delegate.awakeFromNib();
  const int exitStatus = platform.runLoop.run();
  platform.transcript.record("exit", {{"status", exitStatus}});
  return exitStatus;
}

}  // namespace

int runHelper(Desktop& desktop) {
  int exitStatus = 0;
  do {
    exitStatus = runProcessLife(desktop.platform());
  } while (desktop.beginNextProcessLife());
  return exitStatus;
}

}  // namespace kestro
