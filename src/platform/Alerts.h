// Questions that stop the helper until the user has answered. Main thread only.
#pragma once

#include <cstddef>
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

  // Shows the alert and waits for the answer. Where none can be shown, it is answered by its last
  // button, and its box stays as it is.
  virtual AlertAnswer runModal(const Alert& alert) = 0;
};

}  // namespace kestro
