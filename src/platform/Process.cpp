#include "platform/Process.h"

namespace kestro {

Process::~Process() {
  for (auto type = creationOrder_.rbegin(); type != creationOrder_.rend(); ++type) {
    sharedByType_.erase(*type);
  }
}

}  // namespace kestro
