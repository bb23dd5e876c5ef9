// The file-system event stream of a scripted desktop: steps deliver. Main thread only.
#pragma once

#include <vector>

#include "platform/FileEvents.h"

namespace kestro {

class SceneFileEvents final : public FileEvents {
 public:
  std::unique_ptr<FileEventStream> makeStream(const std::vector<std::string>& paths,
                                              Seconds latency, Delivery delivery) override;

  // To every stream that is running.
  void deliver(const std::vector<FileEvent>& events);

 private:
  class Stream;
  std::vector<Stream*> streams_;  // each takes itself out when it is destroyed
};

}  // namespace kestro
