#include "platform/Process.h"

#include <ranges>

namespace kestro {

Process::~Process() {
  for (const std::type_index& type : creationOrder_ | std::views::reverse) {
    sharedByType_.erase(type);
  }
}

}  // namespace kestro
