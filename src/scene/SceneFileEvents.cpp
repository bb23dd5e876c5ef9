#include "scene/SceneFileEvents.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace kestro {

class SceneFileEvents::Stream final : public FileEventStream {
 public:
  Stream(SceneFileEvents& owner, std::vector<std::string> paths, Seconds latency, Delivery delivery)
      : owner_(owner), paths_(std::move(paths)), latency_(latency), delivery_(std::move(delivery)) {
    owner_.streams_.push_back(this);
  }
  ~Stream() override { std::erase(owner_.streams_, this); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  // A step is a delivery: nothing is ever pending.
  void flushSync() override {}
  void flushAsync() override {}
  std::string description() const override {
    return fmt::format("stream of {} every {} s", fmt::join(paths_, ", "), latency_.count());
  }

  // The listener may end this stream from within.
  void deliver(const std::vector<FileEvent>& events) const {
    const Delivery delivery = delivery_;
    delivery(events);
  }

 private:
  SceneFileEvents& owner_;
  std::vector<std::string> paths_;
  Seconds latency_;
  Delivery delivery_;
};

std::unique_ptr<FileEventStream> SceneFileEvents::makeStream(const std::vector<std::string>& paths,
                                                             Seconds latency, Delivery delivery) {
  return std::make_unique<Stream>(*this, paths, latency, std::move(delivery));
}

void SceneFileEvents::deliver(const std::vector<FileEvent>& events) {
  // A listener may stop a stream meanwhile.
  const auto running = streams_;
  for (const Stream* stream : running) {
    if (std::ranges::find(streams_, stream) != streams_.end()) stream->deliver(events);
  }
}

}  // namespace kestro
