#include "platform/Accessibility.h"
#include "platform/Process.h"
#include "product/KestroLegacy.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {

bool KSHelper::accessibilityAvailable(Process& process) {
  recordOperation(process, "KSHelper accessibilityAvailable");
  return process.platform().accessibility.isTrusted();
}

}  // namespace kestro
