// A process life on a scripted desktop, for tests of what reads other applications. The run loop
// does not run: a test calls what it tests itself.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/Desktop.h"
#include "platform/Process.h"
#include "platform/UserDefaults.h"

namespace kestro {

class SceneProcess {
 public:
  struct Event {
    std::string kind;
    PropertyListDictionary fields;
  };

  // Ends the program with the loader's message when the scene cannot be read.
  explicit SceneProcess(std::string_view scene);

  Process& process() { return *process_; }
  // The element with this id in the scene; ends the program when there is none.
  UIElement element(std::string_view id);
  // What the transcript holds of this kind so far.
  std::vector<Event> eventsOfKind(std::string_view kind) const;

 private:
  std::shared_ptr<std::vector<Event>> events_;
  std::unique_ptr<Desktop> desktop_;
  std::unique_ptr<Process> process_;
};

}  // namespace kestro
