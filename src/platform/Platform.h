// Everything that the helper may ask of the desktop it runs on. A backend owns the parts; they
// outlive every process life on that desktop. Later parts (status
// bar, menus, alerts) become further members here, each with a header of its own.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/PropertyList.h"

namespace kestro {

class Accessibility;
class ChildProcesses;
class Clock;
class FileEvents;
class Files;
class PowerManagement;
class RunLoop;
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

struct Platform {
  Accessibility& accessibility;
  WindowServer& windowServer;
  Workspace& workspace;
  UserDefaultsDatabase& defaults;
  ChildProcesses& childProcesses;
  Files& files;
  FileEvents& fileEvents;
  PowerManagement& powerManagement;
  UserNotifications& userNotifications;
  TimeEntryEditors& timeEntryEditors;
  Clock& clock;
  RunLoop& runLoop;
  SystemLog& log;
  Transcript& transcript;

  MainBundle mainBundle;
  // For people: "Version 15.3.1" or "Debian GNU/Linux 12 (bookworm)".
  std::string operatingSystemVersion;
  std::vector<std::string> arguments;           // without the executable
  std::vector<std::string> preferredLanguages;  // most preferred first
  std::filesystem::path dataDirectory;          // the product's database and files; exists, private
  // How the product's libraries find themselves: whether there is a database, a running timer and
  // so on, under the keys of a scene's `product`. Empty: everything as usual.
  const PropertyListDictionary& productConditions;
};

}  // namespace kestro
