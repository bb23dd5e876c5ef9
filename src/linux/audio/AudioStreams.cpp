#include "linux/audio/AudioStreams.h"

#include "linux/audio/SoundServerConnection.h"

namespace kestro {
namespace {

// With two samples in it, a call outlives a server that is started anew.
constexpr std::chrono::milliseconds longestMemory{2500};

}  // namespace

AudioStreams::AudioStreams(SystemLog& log)
    : log_(log), connection_(std::make_unique<SoundServerConnection>()) {}

AudioStreams::~AudioStreams() {
  // A thread that waits for an X server that says nothing is left to end with the process.
  if (!connection_->prepareToEnd()) static_cast<void>(connection_.release());
}

std::vector<AudioStream> AudioStreams::snapshot() {
  SoundServerConnection::State state = connection_->state();
  if (state.isSettled && wasConnected_ != state.isConnected) {
    if (!state.isConnected) {
      log_.write("no sound server; calls are not noticed");
    } else if (wasConnected_) {
      log_.write("the sound server is there again");
    }
    wasConnected_ = state.isConnected;
  }
  const auto now = std::chrono::steady_clock::now();
  if (!state.isConnected || !state.isSettled) {
    if (now - lastSeenAt_ > longestMemory) lastSeen_.clear();
    return lastSeen_;
  }
  lastSeenAt_ = now;
  lastSeen_ = std::move(state.streams);
  return lastSeen_;
}

}  // namespace kestro
