// The windows of an application in its accessibility tree, and which windows of the X server they
// are. Main thread only.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <vector>

#include "linux/accessibility/AtspiApplications.h"
#include "linux/windows/WindowMatching.h"
#include "linux/windows/x11/X11Desktop.h"

namespace kestro {

class AtspiWindows {
 public:
  AtspiWindows(AtspiApplications& applications, AtspiReader& reader, X11Desktop& desktop,
               SampleGeneration& generation)
      : applications_(applications), reader_(reader), desktop_(desktop), generation_(generation) {}

  AccessibilityResult<std::vector<AtspiObject>> windows(ProcessIdentifier process);
  // The window that has the user's attention: the one of the X server's active window, or of the
  // frontmost one of a process that is not in front. With one window, no comparison is made.
  AccessibilityResult<AtspiObject> mainWindow(ProcessIdentifier process);

  bool isTopLevel(const AtspiObject& object, ProcessIdentifier process);
  // The X server's window of a top-level object; absent when it cannot be told. A copy, because any
  // later read may take another snapshot.
  std::optional<X11Window> windowOf(const AtspiObject& object, ProcessIdentifier process);

  const X11Snapshot& snapshot() { return desktop_.snapshot(); }

 private:
  const X11Window* frontWindow(ProcessIdentifier process);
  AccessibleWindow accessibleWindow(const AtspiObject& object);
  std::optional<AtspiObject> match(const std::vector<AtspiObject>& objects,
                                   const X11Window& window);
  std::optional<AtspiObject> lastMatch(const std::vector<AtspiObject>& objects,
                                       const X11Window& window);
  const X11Window* findWindowOf(const AtspiObject& object, ProcessIdentifier process);
  std::map<AtspiObject, X11WindowIdentifier>& matches();

  AtspiApplications& applications_;
  AtspiReader& reader_;
  X11Desktop& desktop_;
  SampleGeneration& generation_;
  std::map<AtspiObject, X11WindowIdentifier> matches_;  // in this generation; 0: none
  std::uint64_t matchedIn_ = 0;
  // The main window's match of an earlier sample, to be tried first.
  X11WindowIdentifier lastWindow_ = 0;
  AtspiObject lastObject_;
};

}  // namespace kestro
