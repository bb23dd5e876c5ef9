// Where the product keeps its files while a scene runs.
#pragma once

#include <filesystem>
#include <optional>

namespace kestro {

// The directory that was asked for, created when it is missing; without one, a fresh and private
// temporary directory that goes away with this object. Throws std::filesystem::filesystem_error
// when neither can be made.
class SceneDataDirectory {
 public:
  explicit SceneDataDirectory(const std::optional<std::filesystem::path>& wanted);
  ~SceneDataDirectory();
  SceneDataDirectory(const SceneDataDirectory&) = delete;
  SceneDataDirectory& operator=(const SceneDataDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
  bool isTemporary_;
};

}  // namespace kestro
