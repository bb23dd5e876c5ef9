#include "scene/SceneDataDirectory.h"

#include <stdlib.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "foundation/PrivateFiles.h"

namespace kestro {
namespace {

// mkdtemp makes it for its owner alone.
std::filesystem::path makeTemporaryDirectory() {
  std::string pattern = (std::filesystem::temp_directory_path() / "kestro-scene-XXXXXX").string();
  if (!mkdtemp(pattern.data())) {
    throw std::filesystem::filesystem_error("cannot make a data directory", pattern,
                                            std::error_code(errno, std::generic_category()));
  }
  return pattern;
}

std::filesystem::path makeDirectory(const std::filesystem::path& path) {
  makePrivateFolder(path);
  return path;
}

}  // namespace

SceneDataDirectory::SceneDataDirectory(const std::optional<std::filesystem::path>& wanted)
    : path_(wanted ? makeDirectory(*wanted) : makeTemporaryDirectory()), isTemporary_(!wanted) {}

SceneDataDirectory::~SceneDataDirectory() {
  std::error_code ignored;  // nobody is left to tell
  if (isTemporary_) std::filesystem::remove_all(path_, ignored);
}

}  // namespace kestro
