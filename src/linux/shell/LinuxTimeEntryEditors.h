// Editors of time entries as windows of KestroDialogs. Main thread only.
#pragma once

#include <list>
#include <memory>

#include "linux/shell/DialogProcess.h"
#include "platform/TimeEntryEditors.h"

namespace kestro {

class LinuxTimeEntryEditors final : public TimeEntryEditors {
 public:
  // The settings must outlive it.
  explicit LinuxTimeEntryEditors(const DialogSettings& settings) : settings_(settings) {}

  void present(const TimeEntryEditorContents& contents, TimeEntryEditorAids aids,
               Placement placement, Completion completion) override;

 private:
  struct Window;
  void take(const std::shared_ptr<Window>& window, const nlohmann::json& message);
  void end(const std::shared_ptr<Window>& window, std::optional<TimeEntryEditorContents> saved);

  const DialogSettings& settings_;
  std::list<std::shared_ptr<Window>> windows_;
};

}  // namespace kestro
