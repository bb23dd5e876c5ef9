// Questions to the user. The helper goes on behind them. Main thread only.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace kestro {

// An alert of warning style.
struct Alert {
  std::string message;
  std::string informativeText;
  std::vector<std::string> buttons;  // the first is the default one
  bool showsSuppression = false;     // a box that asks not to show this again
  bool suppressionIsChecked = false;
};

struct AlertAnswer {
  std::size_t button = 0;  // its place in the list
  bool suppressionIsChecked = false;
};

class Alerts {
 public:
  virtual ~Alerts() = default;

  // Called once, at once or later; never after the process life has ended that asked.
  using Completion = std::function<void(const AlertAnswer& answer)>;

  // Where the alert cannot be shown, or its window fails, it is answered by its last button, and
  // its box stays as it is.
  virtual void present(const Alert& alert, Completion completion) = 0;
  // Brings the alerts that wait for an answer before the user's eyes.
  virtual void bringToFront() = 0;
};

}  // namespace kestro
