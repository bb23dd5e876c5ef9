// Everything that the helper may ask of the desktop it runs on. A backend owns the parts; they
// outlive every process life on that desktop.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "foundation/PropertyList.h"
#include "foundation/TimeZone.h"

namespace kestro {

class Accessibility;
class Alerts;
class AppleEvents;
class ChildProcesses;
class Clock;
class ControlService;
class FileEvents;
class Files;
class GlobalShortcuts;
class LoginItems;
class NotificationCenter;
class PowerManagement;
class RunLoop;
class StandardOutput;
class StatusBar;
class SystemLog;
class TimeEntryEditors;
class Transcript;
class UserDefaultsDatabase;
class UserNotifications;
class WindowServer;
class Workspace;

// The helper's own bundle.
struct MainBundle {
  std::string identifier;
  std::string path;
  std::string executablePath;
  std::optional<std::string> build;
};

// What starts the helper anew once it has ended (docs/shell.md, "Relaunch").
struct RelaunchCommands {
  std::string shell;   // expands {1..N} and knows ">&FILE"
  std::string opener;  // a program that starts what its one argument names
  std::string opened;  // the helper, for `opener`
};

struct Platform {
  Accessibility& accessibility;
  WindowServer& windowServer;
  Workspace& workspace;
  UserDefaultsDatabase& defaults;
  ChildProcesses& childProcesses;
  Files& files;
  FileEvents& fileEvents;
  PowerManagement& powerManagement;
  Alerts& alerts;
  StatusBar& statusBar;
  GlobalShortcuts& globalShortcuts;
  AppleEvents& appleEvents;
  ControlService& controlService;
  LoginItems& loginItems;
  NotificationCenter& notificationCenter;
  UserNotifications& userNotifications;
  TimeEntryEditors& timeEntryEditors;
  StandardOutput& standardOutput;
  Clock& clock;
  RunLoop& runLoop;
  SystemLog& log;
  Transcript& transcript;

  MainBundle mainBundle;
  RelaunchCommands relaunchCommands;
  std::int64_t processIdentifier;  // the helper's own
  // For people: "Version 15.3.1" or "Debian GNU/Linux 12 (bookworm)".
  std::string operatingSystemVersion;
  int operatingSystemMajorVersion;  // of the system designed for; 0 on others
  TimeZone timeZone;
  std::function<std::int64_t()> random;         // 0 to 2147483647, evenly spread
  std::vector<std::string> arguments;           // without the executable
  std::vector<std::string> preferredLanguages;  // most preferred first
  std::filesystem::path dataDirectory;          // the product's database and files; exists, private
  // How the product's libraries find themselves: whether there is a database, a running timer and
  // so on, under the keys of a scene's `product`. Empty: everything as usual.
  const PropertyListDictionary& productConditions;
};

}  // namespace kestro
