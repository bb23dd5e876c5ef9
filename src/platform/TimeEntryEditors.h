// Small windows in which the user edits a time entry. Main thread only; they end later, on the same
// thread.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "foundation/Date.h"

namespace kestro {

struct TimeEntryEditorContents {
  std::string header;
  std::string title;
  Date start;
  Date end;
  std::optional<std::string> project;  // by name
};

class TimeEntryEditors {
 public:
  struct Placement {
    bool obtainFocus;
    bool center;
  };
  // With what the user saved; absent when the window was closed without saving. Never called after
  // the process life has ended that presented the editor.
  using Completion = std::function<void(std::optional<TimeEntryEditorContents> saved)>;

  virtual ~TimeEntryEditors() = default;

  virtual void present(const TimeEntryEditorContents& contents, Placement placement,
                       Completion completion) = 0;
};

}  // namespace kestro
