// Operational messages, one line each. Never titles, addresses or anything else that was read from
// the desktop.
#pragma once

#include <string_view>

namespace kestro {

class SystemLog {
 public:
  virtual ~SystemLog() = default;
  virtual void write(std::string_view line) = 0;
};

}  // namespace kestro
