#include "app/runHelper.h"

#include "app/KSHelperAppDelegate.h"
#include "platform/Desktop.h"
#include "platform/RunLoop.h"
#include "platform/Transcript.h"
#include "probe/KSInfoExtractor.h"

namespace kestro {
namespace {

int runProcessLife(Platform& platform) {
  Process process(platform);
  process.shared<KSInfoExtractor>();  // the registry is filled before anything else
  KSHelperAppDelegate delegate(process);
  if (const auto exitStatus = delegate.awakeFromNib()) return *exitStatus;
  delegate.applicationDidFinishLaunching();
  return platform.runLoop.run();
}

}  // namespace

int runHelper(Desktop& desktop) {
  int exitStatus = 0;
  do {
    exitStatus = runProcessLife(desktop.platform());
    desktop.platform().transcript.record("exit", {{"status", exitStatus}});
  } while (desktop.beginNextProcessLife());
  return exitStatus;
}

}  // namespace kestro
