// One life of the helper process. Whatever is process-wide or read once (the registry, the lists,
// once-read settings, statistics, compiled expressions, shared instances) is an object owned here,
// so that a new life (a test, a relaunch inside a scene) starts with fresh memory. Main thread
// only.
#pragma once

#include <memory>
#include <typeindex>
#include <unordered_map>
#include <vector>

#include "platform/Platform.h"

namespace kestro {

class Process {
 public:
  explicit Process(Platform& platform) : platform_(platform) {}
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  Platform& platform() const { return platform_; }

  // The one `Shared` object of this process, made from the process at its first use. Objects are
  // destroyed with the process, the one made last first.
  template <class Shared>
  Shared& shared();
  // Whether it was made already.
  template <class Shared>
  bool hasShared() const {
    return sharedByType_.contains(std::type_index(typeid(Shared)));
  }

 private:
  Platform& platform_;
  std::unordered_map<std::type_index, std::shared_ptr<void>> sharedByType_;
  std::vector<std::type_index> creationOrder_;
};

template <class Shared>
Shared& Process::shared() {
  const std::type_index type(typeid(Shared));
  auto found = sharedByType_.find(type);
  if (found == sharedByType_.end()) {
    // Made before the map is touched: the constructor may itself ask for shared objects.
    auto object = std::make_shared<Shared>(*this);
    found = sharedByType_.emplace(type, std::move(object)).first;
    creationOrder_.push_back(type);
  }
  return *static_cast<Shared*>(found->second.get());
}

}  // namespace kestro
