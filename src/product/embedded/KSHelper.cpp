#include "platform/Accessibility.h"
#include "platform/Process.h"
#include "platform/Workspace.h"
#include "product/KestroLegacy.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {

bool KSHelper::accessibilityAvailable(Process& process) {
  recordOperation(process, "KSHelper accessibilityAvailable");
  return process.platform().accessibility.isTrusted();
}

std::optional<std::string> KSHelper::getPathForProcess(Process& process, ProcessIdentifier pid) {
  return process.platform().workspace.executablePath(pid);
}

}  // namespace kestro
