// The files of a scripted desktop. A directory is there when the scene lists it or a file in it.
// Main thread only; the state must outlive it.
#pragma once

#include "platform/Files.h"
#include "platform/Transcript.h"
#include "scene/SceneState.h"

namespace kestro {

class SceneFiles final : public Files {
 public:
  SceneFiles(SceneState& state, Transcript& transcript) : state_(state), transcript_(transcript) {}

  std::optional<PropertyListDictionary> dictionary(const std::string& path) override;
  bool exists(const std::string& path) override;
  std::optional<std::string> copy(const std::string& from, const std::string& to) override;
  std::optional<std::string> makeDirectories(const std::string& path) override;
  // Absent when the scene has a file in its place.
  std::optional<std::string> documentsDirectory() override;

 private:
  bool isDirectory(const std::string& path) const;

  SceneState& state_;
  Transcript& transcript_;
};

}  // namespace kestro
