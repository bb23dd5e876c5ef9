// Removes a directory when a signal ends the process: the temporary one of a scene, which nobody
// would ever look at. To be made before any other thread, by the entry point alone.
#pragma once

#include <filesystem>
#include <thread>

namespace kestro {

class RemovalAtSignal {
 public:
  explicit RemovalAtSignal(std::filesystem::path directory);
  // Signals do again what they did before.
  ~RemovalAtSignal();
  RemovalAtSignal(const RemovalAtSignal&) = delete;
  RemovalAtSignal& operator=(const RemovalAtSignal&) = delete;

 private:
  std::thread waiting_;
};

}  // namespace kestro
