// The helper's connection to the sound server, and the streams that it tells of. Everything but
// `state` belongs to its own thread.
#pragma once

#include <pulse/pulseaudio.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "linux/audio/AudioStreams.h"

namespace kestro {

// Who made a stream, as the stream or its client says it.
struct Maker {
  std::string api;
  std::optional<ProcessIdentifier> verifiedProcess;  // of the socket's other end
  std::optional<ProcessIdentifier> namedProcess;     // what the program says of itself
  std::string program;
};

// What both kinds of streams have in common.
struct KnownStream {
  std::uint32_t client = PA_INVALID_INDEX;
  std::uint32_t source = PA_INVALID_INDEX;  // of a recording
  bool isCorked = false;
  bool recordsPlayback = false;
  Maker maker;
  Date since;
};

class SoundServerConnection {
 public:
  struct State {
    bool isConnected = false;
    bool isSettled = false;  // all streams are known, or there is no server
    std::vector<AudioStream> streams;
  };

  SoundServerConnection();
  ~SoundServerConnection();
  SoundServerConnection(const SoundServerConnection&) = delete;
  SoundServerConnection& operator=(const SoundServerConnection&) = delete;

  // Waits for the first answer in the first half second of the connection only.
  State state();

  // To be called before it is destroyed, which it must not be when this is false: within a session
  // of ssh, libpulse asks the X server where the sound server is, and waits for its answer without
  // a bound.
  bool prepareToEnd();

 private:
  static SoundServerConnection* self(void* connection) {
    return static_cast<SoundServerConnection*>(connection);
  }
  static void onTimer(pa_mainloop_api*, pa_time_event* event, const timeval*, void* connection);
  static void onState(pa_context* context, void* connection);
  static void onEvent(pa_context* context, pa_subscription_event_type_t type, std::uint32_t index,
                      void* connection);
  static void onClient(pa_context*, const pa_client_info* info, int end, void* connection);
  static void onSource(pa_context*, const pa_source_info* info, int end, void* connection);
  static void onSinkInput(pa_context*, const pa_sink_input_info* info, int end, void* connection);
  static void onSourceOutput(pa_context*, const pa_source_output_info* info, int end,
                             void* connection);
  static void forget(pa_operation* operation) {
    if (operation) pa_operation_unref(operation);
  }

  void setTimer(pa_usec_t delay);
  void connect();
  void close();
  void fail();
  void askForEverything();
  void ask(pa_subscription_event_type_t facility, std::uint32_t index);
  void remove(pa_subscription_event_type_t facility, std::uint32_t index);
  void keep(std::map<std::uint32_t, KnownStream>& streams, std::uint32_t index, KnownStream stream);
  void listEnded();
  void publish();
  AudioStream streamOf(const KnownStream& known, bool isRecording) const;

  pa_threaded_mainloop* loop_ = nullptr;
  pa_mainloop_api* api_ = nullptr;
  pa_time_event* timer_ = nullptr;
  pa_context* context_ = nullptr;
  int failures_ = 0;
  int listsToCome_ = 0;
  pa_usec_t delay_ = PA_USEC_PER_SEC;
  std::map<std::uint32_t, Maker> clients_;
  std::map<std::uint32_t, bool> isMonitor_;  // by source
  std::map<std::uint32_t, KnownStream> playing_;
  std::map<std::uint32_t, KnownStream> recording_;

  std::mutex mutex_;
  std::condition_variable settled_;
  const std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
  bool isMakingContext_ = false;
  bool isEnding_ = false;
  State state_;
};

}  // namespace kestro
