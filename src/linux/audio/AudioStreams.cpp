#include "linux/audio/AudioStreams.h"

#include "linux/audio/SoundServerConnection.h"

namespace kestro {

AudioStreams::AudioStreams(SystemLog& log)
    : log_(log), connection_(std::make_unique<SoundServerConnection>()) {}

AudioStreams::~AudioStreams() = default;

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
  return std::move(state.streams);
}

}  // namespace kestro
