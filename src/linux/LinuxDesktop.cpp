#include "linux/LinuxDesktop.h"

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "linux/accessibility/LinuxAccessibility.h"
#include "linux/applications/LinuxWorkspace.h"
#include "linux/audio/LinuxPowerManagement.h"
#include "linux/process/LinuxChildProcesses.h"
#include "linux/process/LinuxRunLoop.h"
#include "linux/process/OperatingSystemVersion.h"
#include "linux/process/PreferredLanguages.h"
#include "linux/process/ProcessInformation.h"
#include "linux/process/RelaunchShell.h"
#include "linux/process/StandardErrorLog.h"
#include "linux/process/SystemClock.h"
#include "linux/session/BusConnection.h"
#include "linux/session/Inhibitors.h"
#include "linux/shell/DesktopAppearance.h"
#include "linux/shell/LinuxAlerts.h"
#include "linux/shell/LinuxLoginItems.h"
#include "linux/shell/LinuxScripting.h"
#include "linux/shell/LinuxStatusBar.h"
#include "linux/shell/LinuxTimeEntryEditors.h"
#include "linux/shell/LinuxUserNotifications.h"
#include "linux/storage/LinuxDirectories.h"
#include "linux/storage/LinuxFileEvents.h"
#include "linux/storage/LinuxFiles.h"
#include "linux/storage/PlistUserDefaults.h"
#include "linux/windows/x11/X11Shortcuts.h"
#include "linux/windows/x11/X11WindowServer.h"
#include "platform/LocalizedStrings.h"
#include "platform/NotificationCenter.h"
#include "transcript/PrintedLines.h"
#include "transcript/TimedTranscript.h"

namespace kestro {
namespace {

// The menu has images since this version of the system designed for; desktops here show them, too.
constexpr int versionWithMenuImages = 26;

std::filesystem::path programDirectory() {
  return std::filesystem::path(executablePath(getpid()).value_or("")).parent_path();
}

// A program that the helper starts: installed under libexec, or beside the helper in a build.
std::string programPath(const char* name) {
  const auto installed = programDirectory() / "../libexec/kestro" / name;
  std::error_code error;
  const bool isInstalled = std::filesystem::exists(installed, error);
  return (isInstalled ? installed : programDirectory() / name).lexically_normal().string();
}

// In a build the icons lie beside the programs; installed ones are the icon theme's.
std::string iconDirectory() {
  const auto icons = programDirectory() / "../share/icons";
  std::error_code error;
  const bool isThere = std::filesystem::exists(icons / "hicolor", error);
  const bool isSearched = icons.lexically_normal() == "/usr/share/icons" ||
                          icons.lexically_normal() == "/usr/local/share/icons";
  return isThere && !isSearched ? icons.lexically_normal().string() : "";
}

std::filesystem::path autostartFile() {
  return configurationDirectory().parent_path() / "autostart" /
         (std::string(KESTRO_BUNDLE_IDENTIFIER) + ".desktop");
}

// What the helper needs to find out whether it is the only one.
struct Session {
  Session()
      : runLoop(generation, log),
        bus(BusKind::session, runLoop, log),
        scripting(bus, runLoop, log) {}

  StandardErrorLog log;
  SampleGeneration generation;
  LinuxRunLoop runLoop;
  BusConnection bus;
  LinuxScripting scripting;
};

class LinuxDesktop final : public Desktop {
 public:
  LinuxDesktop(std::unique_ptr<Session> session, DesktopOptions options);

  Platform& platform() override { return platform_; }
  // A process of the live desktop has one life: a relaunch is a new process.
  bool beginNextProcessLife() override { return false; }

 private:
  static MainBundle mainBundle();
  std::int64_t randomNumber();
  static RelaunchCommands relaunchCommands();
  std::filesystem::path makeDataDirectory(const DesktopOptions& options);

  std::unique_ptr<Session> session_;
  StandardErrorLog& log_;
  SampleGeneration& generation_;
  LinuxRunLoop& runLoop_;
  SystemClock clock_;
  std::filesystem::path dataDirectory_;
  X11Desktop x11_;
  std::vector<std::string> languages_;
  DesktopEntries desktopEntries_;
  ApplicationIdentity identity_;
  LinuxChildProcesses childProcesses_;
  LinuxWorkspace workspace_;
  X11WindowServer windowServer_;
  LinuxAccessibility accessibility_;
  PlistUserDefaultsDatabase defaults_;
  LinuxFiles files_;
  LinuxFileEvents fileEvents_;
  BusConnection systemBus_;
  Inhibitors inhibitors_;
  LinuxPowerManagement powerManagement_;
  DesktopAppearance appearance_;
  DialogSettings dialogs_;
  LinuxAlerts alerts_;
  LinuxStatusBar statusBar_;
  X11Shortcuts globalShortcuts_;
  LinuxLoginItems loginItems_;
  NotificationCenter notificationCenter_;
  LinuxUserNotifications userNotifications_;
  LinuxTimeEntryEditors timeEntryEditors_;
  TimedTranscript transcript_;
  PrintedLines standardOutput_;
  std::random_device random_;
  PropertyListDictionary productConditions_;
  Platform platform_;
};

LinuxDesktop::LinuxDesktop(std::unique_ptr<Session> session, DesktopOptions options)
    : session_(std::move(session)),
      log_(session_->log),
      generation_(session_->generation),
      runLoop_(session_->runLoop),
      dataDirectory_(makeDataDirectory(options)),
      x11_(generation_, log_),
      languages_(preferredLanguages(localeVariablesOfEnvironment())),
      desktopEntries_(applicationDirectories(), languages_),
      identity_(desktopEntries_),
      workspace_(x11_, desktopEntries_, identity_, childProcesses_, generation_),
      windowServer_(x11_),
      accessibility_(x11_, identity_, generation_, log_),
      defaults_(configurationDirectory(), log_),
      systemBus_(BusKind::system, runLoop_, log_),
      inhibitors_(session_->bus, systemBus_),
      powerManagement_(inhibitors_, log_),
      appearance_(session_->bus),
      dialogs_{runLoop_, log_, appearance_, programPath("KestroDialogs"),
               std::string(languageOfTexts(languages_))},
      alerts_(dialogs_),
      statusBar_(session_->bus, runLoop_, appearance_, iconDirectory()),
      globalShortcuts_(runLoop_, log_),
      loginItems_(autostartFile(), mainBundle().executablePath, log_),
      userNotifications_(session_->bus, runLoop_, log_, dataDirectory_ / "Notifications.plist"),
      timeEntryEditors_(dialogs_),
      transcript_(clock_, clock_.now(), std::move(options.transcriptWriter)),
      standardOutput_(options.standardOutput, transcript_),
      platform_{.accessibility = accessibility_,
                .windowServer = windowServer_,
                .workspace = workspace_,
                .defaults = defaults_,
                .childProcesses = childProcesses_,
                .files = files_,
                .fileEvents = fileEvents_,
                .powerManagement = powerManagement_,
                .alerts = alerts_,
                .statusBar = statusBar_,
                .globalShortcuts = globalShortcuts_,
                .appleEvents = session_->scripting,
                .controlService = session_->scripting,
                .loginItems = loginItems_,
                .notificationCenter = notificationCenter_,
                .userNotifications = userNotifications_,
                .timeEntryEditors = timeEntryEditors_,
                .standardOutput = standardOutput_,
                .clock = clock_,
                .runLoop = runLoop_,
                .log = log_,
                .transcript = transcript_,
                .mainBundle = mainBundle(),
                .relaunchCommands = relaunchCommands(),
                .processIdentifier = getpid(),
                .operatingSystemVersion = operatingSystemVersion(),
                .operatingSystemMajorVersion = versionWithMenuImages,
                .timeZone = TimeZone::local(),
                .random = [this] { return randomNumber(); },
                .arguments = options.arguments,
                .preferredLanguages = languages_,
                .dataDirectory = dataDirectory_,
                .productConditions = productConditions_} {}

std::int64_t LinuxDesktop::randomNumber() {
  return std::uniform_int_distribution<std::int64_t>(0, 2147483647)(random_);
}

MainBundle LinuxDesktop::mainBundle() {
  const std::string executable = executablePath(getpid()).value_or("");
  return {KESTRO_BUNDLE_IDENTIFIER, std::filesystem::path(executable).parent_path().string(),
          executable, std::nullopt};
}

// The helper has no bundle to open here: its executable is started in a session of its own.
RelaunchCommands LinuxDesktop::relaunchCommands() {
  return {relaunchShell("/bin/sh"), "/usr/bin/setsid", mainBundle().executablePath};
}

// They would hold titles and addresses. The limit leaves the desktop's own rights to look at the
// process as they are, which taking the mark "dumpable" from it would not.
void forgoCoreFiles() {
  rlimit limit{};
  if (getrlimit(RLIMIT_CORE, &limit) != 0) return;
  limit.rlim_cur = 0;
  setrlimit(RLIMIT_CORE, &limit);
}

std::filesystem::path LinuxDesktop::makeDataDirectory(const DesktopOptions& options) {
  auto directory = options.dataDirectory.value_or(defaultDataDirectory());
  if (!makePrivateDirectory(directory)) {
    log_.write("the data directory cannot be made, or others may look into it: " +
               directory.string());
  }
  return directory;
}

}  // namespace

std::unique_ptr<Desktop> makeLinuxDesktop(DesktopOptions options) {
  // A bus, an X server or a log that goes away is an error of the next write, not the end.
  std::signal(SIGPIPE, SIG_IGN);
  forgoCoreFiles();
  auto session = std::make_unique<Session>();
  if (options.servesSession && !session->scripting.claimName()) return nullptr;
  return std::make_unique<LinuxDesktop>(std::move(session), std::move(options));
}

}  // namespace kestro
