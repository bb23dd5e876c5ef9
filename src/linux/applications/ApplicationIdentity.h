// Which application a window or a process belongs to. Main thread only.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "linux/applications/DesktopEntries.h"
#include "linux/windows/x11/X11Snapshot.h"
#include "platform/Workspace.h"

namespace kestro {

// What an application tells about itself. Empty texts: it does not.
struct ApplicationTraits {
  std::string gtkApplicationIdentifier;
  std::string instanceName;
  std::string className;
  std::string executablePath;
  bool operator<(const ApplicationTraits& other) const {
    return std::tie(executablePath, instanceName, className, gtkApplicationIdentifier) <
           std::tie(other.executablePath, other.instanceName, other.className,
                    other.gtkApplicationIdentifier);
  }
};

// The desktop entry that fits best, by the first rule that finds one: the GTK application
// identifier; StartupWMClass; an identifier equal to the window class in lower case, or ending in
// it after a dot; the program of Exec equal to the executable file, unless that is an interpreter
// of many programs. Null when none does.
const DesktopEntry* findDesktopEntry(const std::vector<DesktopEntry>& entries,
                                     const ApplicationTraits& traits);

class ApplicationIdentity {
 public:
  explicit ApplicationIdentity(DesktopEntries& entries) : entries_(entries) {}

  // The application behind the process; `window`: one of its windows, null when it has none. The
  // bundle identifier is the designed platform's where it knows the application, else the desktop
  // identifier, else the window class in lower case, else the name of the executable file.
  RunningApplication application(ProcessIdentifier process, const X11Window* window);
  // Whether the pages that its windows show are its documents, and not the application itself: a
  // known browser, an application (also one of a browser's installed web applications) whose
  // desktop file opens web addresses or starts such a browser, or one of which nothing is known.
  bool isBrowser(ProcessIdentifier process, const X11Window& window);

 private:
  struct Identity {
    std::optional<std::string> bundleIdentifier;
    std::optional<std::string> name;
    std::optional<std::string> bundlePath;
    bool isBrowser = false;
  };

  const Identity& identityOf(ProcessIdentifier process, const X11Window* window);
  const Identity& identityOf(const ApplicationTraits& traits);
  Identity makeIdentity(const ApplicationTraits& traits);

  DesktopEntries& entries_;
  std::uint64_t entriesVersion_ = 0;
  std::map<ApplicationTraits, Identity> identities_;
};

}  // namespace kestro
