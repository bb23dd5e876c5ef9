// One reported change of a watched path. A plain value.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/Date.h"

namespace kestro {

struct SCEvent {
  std::uint64_t eventId = 0;
  Date eventDate;         // when it was delivered; the stream gives no time of its own
  std::string eventPath;  // without a slash at its end
  std::uint32_t eventFlag = 0;

  std::string description() const;
};

}  // namespace kestro
