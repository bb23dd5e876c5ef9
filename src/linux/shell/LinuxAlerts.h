// Alerts as windows of KestroDialogs. Main thread only.
#pragma once

#include <list>

#include "linux/shell/DialogProcess.h"
#include "platform/Alerts.h"

namespace kestro {

class LinuxAlerts final : public Alerts {
 public:
  // The settings must outlive it.
  explicit LinuxAlerts(const DialogSettings& settings) : settings_(settings) {}

  // A window that crashes counts as its last button.
  void present(const Alert& alert, Completion completion) override;
  void bringToFront() override;

 private:
  struct Window;
  void end(const std::shared_ptr<Window>& window, const AlertAnswer& answer);

  const DialogSettings& settings_;
  std::list<std::shared_ptr<Window>> windows_;
};

}  // namespace kestro
