#include "app/Relaunch.h"

#include "app/RelaunchScript.h"
#include "platform/ChildProcesses.h"
#include "platform/Clock.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"
#include "product/KestroUI.h"

namespace kestro {

std::optional<Relaunch> Relaunch::request(Process& process, Seconds delay,
                                          PropertyListDictionary attributes) {
  UserDefaults& defaults = process.platform().defaults.standard();
  if (defaults.boolean("KSHelperAppDelegate_suppressAllAppRelaunches").value_or(false)) {
    process.platform().log.write("App relaunch suppressed by preferences");
    return std::nullopt;
  }
  process.platform().runLoop.post(
      [&process] { process.shared<InfoLogger>().prepareForShutdown(true); });
  HelperHelper::logEvent(process, "KSHelperAppDelegate.relaunchRequested", attributes, true);
  defaults.set("lastSelfRelaunchAt", process.platform().clock.now());
  Relaunch relaunch(process, std::move(attributes));
  relaunch.start(delay);
  return relaunch;
}

void Relaunch::start(Seconds delay) {
  Platform& platform = process_.platform();
  const RelaunchCommands& commands = platform.relaunchCommands;
  const std::string script =
      relaunchScript({platform.processIdentifier, delay, commands.opener, commands.opened});
  const auto failure = platform.childProcesses.startDetached(commands.shell, {"-c", script});
  if (failure) launchError_ = failure->reason;
}

void Relaunch::report() {
  PropertyListDictionary outcome = attributes_;
  outcome.set("launchResult", !launchError_);
  outcome.setIfPresent("error", launchError_);
  const Platform& platform = process_.platform();
  outcome.set("runningAppCount",
              platform.workspace.runningApplications(platform.mainBundle.identifier).size());
  HelperHelper::logEvent(process_, "KSHelperAppDelegate.relaunchProcessFinished",
                         std::move(outcome), true);
}

void Relaunch::prepare() {
  HelperHelper::prepareForRelaunch(process_);
}

}  // namespace kestro
