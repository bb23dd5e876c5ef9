#include "linux/audio/SoundServerConnection.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr int triesInARow = 10;
constexpr pa_usec_t firstDelay = PA_USEC_PER_SEC;
constexpr pa_usec_t longestDelay = 30 * PA_USEC_PER_SEC;
constexpr std::chrono::milliseconds longestFirstWait{500};
constexpr pa_usec_t longestConnecting = 5 * PA_USEC_PER_SEC;

std::string textProperty(const pa_proplist* properties, const char* key) {
  const char* value = properties ? pa_proplist_gets(properties, key) : nullptr;
  return value ? value : "";
}

std::optional<ProcessIdentifier> processProperty(const pa_proplist* properties, const char* key) {
  const std::string text = textProperty(properties, key);
  ProcessIdentifier process = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), process);
  const bool isNumber = error == std::errc{} && end == text.data() + text.size();
  return isNumber && process > 0 ? std::optional(process) : std::nullopt;
}

bool isTrue(const pa_proplist* properties, const char* key) {
  const std::string text = textProperty(properties, key);
  return text == "true" || text == "1";
}

Maker makerIn(const pa_proplist* properties) {
  return {textProperty(properties, "client.api"), processProperty(properties, "pipewire.sec.pid"),
          processProperty(properties, PA_PROP_APPLICATION_PROCESS_ID),
          textProperty(properties, PA_PROP_APPLICATION_PROCESS_BINARY)};
}

Date dateNow() {
  return std::chrono::time_point_cast<Date::duration>(std::chrono::system_clock::now());
}

// The connecting process of PipeWire's own stand-in for PulseAudio is that stand-in.
std::optional<ProcessIdentifier> processOf(const Maker& stream, const Maker& client) {
  const std::string& api = stream.api.empty() ? client.api : stream.api;
  const auto verified = stream.verifiedProcess ? stream.verifiedProcess : client.verifiedProcess;
  if (verified && api != "pipewire-pulse") return verified;
  return stream.namedProcess ? stream.namedProcess : client.namedProcess;
}

}  // namespace

SoundServerConnection::SoundServerConnection() : loop_(pa_threaded_mainloop_new()) {
  if (!loop_) return;
  api_ = pa_threaded_mainloop_get_api(loop_);
  setTimer(0);
  // The run loop reads the signals of the process: none may come to this thread.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  pa_threaded_mainloop_start(loop_);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

bool SoundServerConnection::prepareToEnd() {
  const std::lock_guard lock(mutex_);
  isEnding_ = true;
  return !isMakingContext_;
}

SoundServerConnection::~SoundServerConnection() {
  if (!loop_) return;
  pa_threaded_mainloop_stop(loop_);
  close();
  if (timer_) api_->time_free(timer_);
  pa_threaded_mainloop_free(loop_);
}

void SoundServerConnection::setTimer(pa_usec_t delay) {
  timeval due{};
  pa_timeval_add(pa_gettimeofday(&due), delay);
  if (timer_) {
    api_->time_restart(timer_, &due);
  } else {
    timer_ = api_->time_new(api_, &due, onTimer, this);
  }
}

// Due: to connect, or to give up a server that says nothing.
void SoundServerConnection::onTimer(pa_mainloop_api*, pa_time_event*, const timeval*,
                                    void* connection) {
  SoundServerConnection* own = self(connection);
  if (own->context_ && pa_context_get_state(own->context_) == PA_CONTEXT_READY) return;
  if (own->context_) return own->fail();
  own->connect();
}

void SoundServerConnection::connect() {
  {
    const std::lock_guard lock(mutex_);
    if (isEnding_) return;
    isMakingContext_ = true;
  }
  context_ = pa_context_new(api_, "Kestro");
  {
    const std::lock_guard lock(mutex_);
    isMakingContext_ = false;
  }
  if (!context_) return fail();
  pa_context_set_state_callback(context_, onState, this);
  pa_context_set_subscribe_callback(context_, onEvent, this);
  setTimer(longestConnecting);
  // A failure may have come to onState already.
  const int error = pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
  if (error < 0 && context_) fail();
}

void SoundServerConnection::close() {
  if (!context_) return;
  pa_context_set_state_callback(context_, nullptr, nullptr);
  pa_context_set_subscribe_callback(context_, nullptr, nullptr);
  pa_context_disconnect(context_);
  pa_context_unref(context_);
  context_ = nullptr;
}

SoundServerConnection::State SoundServerConnection::state() {
  std::unique_lock lock(mutex_);
  settled_.wait_until(lock, begun_ + longestFirstWait, [this] { return state_.isSettled; });
  return state_;
}

void SoundServerConnection::fail() {
  close();
  listsToCome_ = 0;
  clients_.clear();
  isMonitor_.clear();
  playing_.clear();
  recording_.clear();
  ++failures_;
  delay_ = failures_ <= triesInARow ? firstDelay : std::min(2 * delay_, longestDelay);
  setTimer(delay_);
  publish();
}

void SoundServerConnection::onState(pa_context* context, void* connection) {
  SoundServerConnection* own = self(connection);
  const pa_context_state_t state = pa_context_get_state(context);
  if (!PA_CONTEXT_IS_GOOD(state)) return own->fail();
  if (state == PA_CONTEXT_READY) own->askForEverything();
}

void SoundServerConnection::askForEverything() {
  failures_ = 0;
  delay_ = firstDelay;
  constexpr auto changes = static_cast<pa_subscription_mask_t>(
      PA_SUBSCRIPTION_MASK_SINK_INPUT | PA_SUBSCRIPTION_MASK_SOURCE_OUTPUT |
      PA_SUBSCRIPTION_MASK_CLIENT | PA_SUBSCRIPTION_MASK_SOURCE);
  forget(pa_context_subscribe(context_, changes, nullptr, nullptr));
  forget(pa_context_get_client_info_list(context_, onClient, this));
  forget(pa_context_get_source_info_list(context_, onSource, this));
  forget(pa_context_get_sink_input_info_list(context_, onSinkInput, this));
  forget(pa_context_get_source_output_info_list(context_, onSourceOutput, this));
  listsToCome_ = 4;
  publish();
}

void SoundServerConnection::listEnded() {
  if (listsToCome_ > 0) --listsToCome_;
  publish();
}

void SoundServerConnection::onEvent(pa_context*, pa_subscription_event_type_t type,
                                    std::uint32_t index, void* connection) {
  const auto facility =
      static_cast<pa_subscription_event_type_t>(type & PA_SUBSCRIPTION_EVENT_FACILITY_MASK);
  const bool isRemoval = (type & PA_SUBSCRIPTION_EVENT_TYPE_MASK) == PA_SUBSCRIPTION_EVENT_REMOVE;
  if (isRemoval) return self(connection)->remove(facility, index);
  self(connection)->ask(facility, index);
}

void SoundServerConnection::ask(pa_subscription_event_type_t facility, std::uint32_t index) {
  switch (facility) {
    case PA_SUBSCRIPTION_EVENT_CLIENT:
      return forget(pa_context_get_client_info(context_, index, onClient, this));
    case PA_SUBSCRIPTION_EVENT_SOURCE:
      return forget(pa_context_get_source_info_by_index(context_, index, onSource, this));
    case PA_SUBSCRIPTION_EVENT_SINK_INPUT:
      return forget(pa_context_get_sink_input_info(context_, index, onSinkInput, this));
    case PA_SUBSCRIPTION_EVENT_SOURCE_OUTPUT:
      return forget(pa_context_get_source_output_info(context_, index, onSourceOutput, this));
    default:
      return;
  }
}

void SoundServerConnection::remove(pa_subscription_event_type_t facility, std::uint32_t index) {
  if (facility == PA_SUBSCRIPTION_EVENT_CLIENT) clients_.erase(index);
  if (facility == PA_SUBSCRIPTION_EVENT_SOURCE) isMonitor_.erase(index);
  if (facility == PA_SUBSCRIPTION_EVENT_SINK_INPUT) playing_.erase(index);
  if (facility == PA_SUBSCRIPTION_EVENT_SOURCE_OUTPUT) recording_.erase(index);
  publish();
}

void SoundServerConnection::onClient(pa_context*, const pa_client_info* info, int end,
                                     void* connection) {
  if (end != 0 || !info) return self(connection)->listEnded();
  self(connection)->clients_[info->index] = makerIn(info->proplist);
}

void SoundServerConnection::onSource(pa_context*, const pa_source_info* info, int end,
                                     void* connection) {
  if (end != 0 || !info) return self(connection)->listEnded();
  self(connection)->isMonitor_[info->index] = info->monitor_of_sink != PA_INVALID_INDEX;
}

void SoundServerConnection::onSinkInput(pa_context*, const pa_sink_input_info* info, int end,
                                        void* connection) {
  if (end != 0 || !info) return self(connection)->listEnded();
  self(connection)
      ->keep(
          self(connection)->playing_, info->index,
          {info->client, PA_INVALID_INDEX, info->corked != 0, false, makerIn(info->proplist), {}});
}

// Level meters ask for peaks; recorders of what is played, for a sink's monitor.
void SoundServerConnection::onSourceOutput(pa_context*, const pa_source_output_info* info, int end,
                                           void* connection) {
  if (end != 0 || !info) return self(connection)->listEnded();
  const std::string_view resampling = info->resample_method ? info->resample_method : "";
  const bool recordsPlayback = resampling == "peaks" || isTrue(info->proplist, "stream.monitor") ||
                               isTrue(info->proplist, "resample.peaks") ||
                               isTrue(info->proplist, "stream.capture.sink");
  self(connection)
      ->keep(self(connection)->recording_, info->index,
             {info->client,
              info->source,
              info->corked != 0,
              recordsPlayback,
              makerIn(info->proplist),
              {}});
}

// One that moves to another device, or is muted, goes on.
void SoundServerConnection::keep(std::map<std::uint32_t, KnownStream>& streams, std::uint32_t index,
                                 KnownStream stream) {
  const auto known = streams.find(index);
  const bool wentOn = known != streams.end() && !known->second.isCorked;
  stream.since = wentOn ? known->second.since : dateNow();
  streams.insert_or_assign(index, std::move(stream));
}

AudioStream SoundServerConnection::streamOf(const KnownStream& known, bool isRecording) const {
  const auto client = clients_.find(known.client);
  const Maker maker = client == clients_.end() ? Maker() : client->second;
  const auto source = isMonitor_.find(known.source);
  const bool isMonitor = source != isMonitor_.end() && source->second;
  return {isRecording,
          known.isCorked,
          known.client != PA_INVALID_INDEX,
          known.recordsPlayback || isMonitor,
          processOf(known.maker, maker),
          known.maker.program.empty() ? maker.program : known.maker.program,
          known.since};
}

void SoundServerConnection::publish() {
  State now;
  now.isConnected = context_ && pa_context_get_state(context_) == PA_CONTEXT_READY;
  for (const auto& [index, stream] : playing_)
    now.streams.push_back(streamOf(stream, false));
  for (const auto& [index, stream] : recording_)
    now.streams.push_back(streamOf(stream, true));
  now.isSettled = listsToCome_ == 0;
  {
    const std::lock_guard lock(mutex_);
    state_ = std::move(now);
  }
  settled_.notify_all();
}

}  // namespace kestro
