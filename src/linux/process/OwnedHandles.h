// What the system hands out and wants back: descriptors, and sources of the event loop.
#pragma once

#include <systemd/sd-event.h>
#include <unistd.h>

#include <memory>

namespace kestro {

struct EventSourceDeleter {
  void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
};
using EventSource = std::unique_ptr<sd_event_source, EventSourceDeleter>;

// Closed when it goes; negative: none.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() { reset(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }
  void reset(int number = -1) {
    if (number_ >= 0) close(number_);
    number_ = number;
  }

 private:
  int number_;
};

}  // namespace kestro
