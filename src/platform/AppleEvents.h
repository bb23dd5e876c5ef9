// Requests of other programs to the helper: scripting commands and addresses. Main thread only.
#pragma once

#include <functional>
#include <string>

#include "foundation/PropertyList.h"

namespace kestro {

class AppleEvents {
 public:
  // A command of the scripting dictionary (resources/KestroHelper.sdef): the class that implements
  // it, and its evaluated arguments.
  using CommandHandler = std::function<void(const std::string& implementingClass,
                                            const PropertyListDictionary& evaluatedArguments)>;
  using URLHandler = std::function<void(const std::string& address)>;

  virtual ~AppleEvents() = default;

  // Null: such events are dropped.
  virtual void setCommandHandler(CommandHandler handler) = 0;
  virtual void setGetURLHandler(URLHandler handler) = 0;
};

}  // namespace kestro
