// Changes below watched directories, as the desktop's file-system event stream reports them. Main
// thread only; batches arrive on the run loop.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/Date.h"

namespace kestro {

// One changed path, with the stream's own identifier and flags.
struct FileEvent {
  std::string path;
  std::uint32_t flags = 0;
  std::uint64_t identifier = 0;
};

// Delivers from its creation until it is destroyed.
class FileEventStream {
 public:
  virtual ~FileEventStream() = default;

  // Delivers what is pending: before the call returns, or soon.
  virtual void flushSync() = 0;
  virtual void flushAsync() = 0;
  virtual std::string description() const = 0;
};

class FileEvents {
 public:
  // One delivery: the changes of some time, in their order.
  using Delivery = std::function<void(const std::vector<FileEvent>& events)>;

  virtual ~FileEvents() = default;

  // Watches the directories and everything below them, and the directories themselves; only changes
  // from now on. Changes are held back for `latency`, so that a burst is one delivery.
  virtual std::unique_ptr<FileEventStream> makeStream(const std::vector<std::string>& paths,
                                                      Seconds latency, Delivery delivery) = 0;
};

}  // namespace kestro
