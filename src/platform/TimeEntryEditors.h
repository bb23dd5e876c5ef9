// Small windows in which the user edits a time entry. Main thread only; they end later, on the same
// thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "foundation/Date.h"

namespace kestro {

struct TimeEntryEditorContents {
  std::string header;
  std::string title;
  Date start;
  Date end;
  std::optional<std::string> project;  // by name
};

// What helps the user to fill the fields.
struct TimeEntryEditorAids {
  // Why this cannot be saved, in a sentence for the user; absent: it can. Null: anything can.
  using Check = std::function<std::optional<std::string>(const TimeEntryEditorContents&)>;

  bool hasEnd = true;                 // a timer that runs has none
  std::vector<std::string> projects;  // to choose from, by name
  std::vector<std::string> titles;    // of earlier entries, to complete from, the latest first
  Check check;
};

class TimeEntryEditors {
 public:
  struct Placement {
    bool obtainFocus;
    bool center;
  };
  // With what the user saved; absent when the window was closed without saving, or failed. Never
  // called after the process life has ended that presented the editor.
  using Completion = std::function<void(std::optional<TimeEntryEditorContents> saved)>;

  virtual ~TimeEntryEditors() = default;

  // What the check refuses stays in the window, which says why.
  virtual void present(const TimeEntryEditorContents& contents, TimeEntryEditorAids aids,
                       Placement placement, Completion completion) = 0;
};

}  // namespace kestro
