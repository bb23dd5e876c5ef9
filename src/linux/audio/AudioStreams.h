// The streams of the sound server (PulseAudio, or PipeWire in its place), over libpulse. One
// connection, which is told of changes and never asks again and again; no server is ever started.
// A thread of its own serves it, so that a server that hangs holds up nobody; a server that is not
// there is tried again after a second, and after ten such tries at intervals that grow to half a
// minute. Main thread only.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/Date.h"
#include "platform/Accessibility.h"
#include "platform/SystemLog.h"

namespace kestro {

class SoundServerConnection;

struct AudioStream {
  bool isRecording = false;
  bool isCorked = false;         // paused: it plays or records nothing
  bool hasClient = true;         // false: the server's own, of a loopback or an echo canceller
  bool recordsPlayback = false;  // what the machine plays, or only its loudness; no microphone
  std::optional<ProcessIdentifier> process;  // as the stream or its client names it
  std::string program;                       // the name of its executable file; empty: unknown
  Date since;                                // when it was first seen running
};

class AudioStreams {
 public:
  explicit AudioStreams(SystemLog& log);
  ~AudioStreams();
  AudioStreams(const AudioStreams&) = delete;
  AudioStreams& operator=(const AudioStreams&) = delete;

  // As they are now; none without a server, but for the first seconds after its loss, in which they
  // are as they were.
  std::vector<AudioStream> snapshot();

 private:
  SystemLog& log_;
  std::optional<bool> wasConnected_;  // when the log was last told
  std::vector<AudioStream> lastSeen_;
  std::chrono::steady_clock::time_point lastSeenAt_;
  std::unique_ptr<SoundServerConnection> connection_;
};

}  // namespace kestro
