#include "calls/ProcessBundle.h"

#include "platform/Process.h"
#include "product/KestroDatabase.h"
#include "product/KestroLegacy.h"

namespace kestro {

ApplicationBundle bundleAroundProcess(Process& process, ProcessIdentifier pid) {
  constexpr std::string_view extension = ".app";
  const auto path = KSHelper::getPathForProcess(process, pid);
  const auto position = path ? path->rfind(extension) : std::string::npos;
  if (position == std::string::npos) return {};
  const auto bundle =
      process.platform().workspace.bundleAtPath(path->substr(0, position + extension.size()));
  if (!bundle) return {};
  ApplicationBundle result = *bundle;
  if (result.localizedName) {
    result.localizedName = removingInvisibleControlCharacters(*result.localizedName);
  }
  return result;
}

}  // namespace kestro
