#include "linux/process/LineProcess.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include "linux/process/OwnedHandles.h"
#include "linux/process/SpawnAttributes.h"

namespace kestro {
namespace {

constexpr std::size_t longestLine = 16'000'000;

bool makePipe(Descriptor& reading, Descriptor& writing) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return false;
  reading.reset(ends[0]);
  writing.reset(ends[1]);
  return true;
}

void makeNonBlocking(const Descriptor& descriptor) {
  fcntl(descriptor.number(), F_SETFL, fcntl(descriptor.number(), F_GETFL) | O_NONBLOCK);
}

// The program keeps the helper's standard error, which is the session's log.
pid_t spawnProgram(const std::string& path, int input, int output) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
  const SpawnAttributes attributes;
  std::string name = path;
  const std::array<char*, 2> arguments{name.data(), nullptr};
  pid_t process = 0;
  const int result =
      posix_spawn(&process, path.c_str(), &actions, attributes.get(), arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return result == 0 ? process : 0;
}

}  // namespace

// Kept by the object and, while the program runs, by the source that waits for its end, so that it
// is reaped in any case.
struct LineProcess::State : std::enable_shared_from_this<State> {
  State(LinuxRunLoop& loop, Line onLine, Ended onEnded)
      : runLoop(loop), line(std::move(onLine)), ended(std::move(onEnded)) {}

  bool spawn(const std::string& path);
  bool addSources();
  void write();
  void read();
  void takeLines();
  void end();
  static int onInput(sd_event_source*, int, std::uint32_t, void* state);
  static int onOutput(sd_event_source*, int, std::uint32_t, void* state);
  static int onEnd(sd_event_source*, const siginfo_t*, void* state);

  LinuxRunLoop& runLoop;
  Line line;
  Ended ended;
  bool hasOwner = true;
  bool hasEnded = false;
  pid_t process = 0;
  Descriptor toProgram;
  Descriptor fromProgram;
  std::string unsent;
  std::string unread;
  EventSource inputSource;
  EventSource outputSource;
  EventSource endSource;
  std::shared_ptr<State> whileRunning;
};

bool LineProcess::State::spawn(const std::string& path) {
  Descriptor childInput;
  Descriptor childOutput;
  if (!makePipe(childInput, toProgram) || !makePipe(fromProgram, childOutput)) return false;
  makeNonBlocking(toProgram);
  makeNonBlocking(fromProgram);
  process = spawnProgram(path, childInput.number(), childOutput.number());
  return process > 0;
}

bool LineProcess::State::addSources() {
  sd_event* event = runLoop.event();
  sd_event_source* source = nullptr;
  // The event loop reports the end of a child only while its signal is blocked.
  sigset_t childSignal;
  sigemptyset(&childSignal);
  sigaddset(&childSignal, SIGCHLD);
  sigprocmask(SIG_BLOCK, &childSignal, nullptr);
  if (sd_event_add_child(event, &source, process, WEXITED, onEnd, this) < 0) return false;
  endSource.reset(std::exchange(source, nullptr));
  whileRunning = shared_from_this();
  if (sd_event_add_io(event, &source, fromProgram.number(), EPOLLIN, onOutput, this) < 0) {
    return false;
  }
  outputSource.reset(std::exchange(source, nullptr));
  if (sd_event_add_io(event, &source, toProgram.number(), EPOLLOUT, onInput, this) < 0) {
    return false;
  }
  inputSource.reset(source);
  sd_event_source_set_enabled(source, SD_EVENT_OFF);
  return true;
}

void LineProcess::State::write() {
  while (!unsent.empty()) {
    const ssize_t count = ::write(toProgram.number(), unsent.data(), unsent.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno != EAGAIN) unsent.clear();  // it reads no more; its end will be seen
    if (count <= 0) break;
    unsent.erase(0, static_cast<std::size_t>(count));
  }
  if (inputSource) {
    sd_event_source_set_enabled(inputSource.get(), unsent.empty() ? SD_EVENT_OFF : SD_EVENT_ON);
  }
}

void LineProcess::State::read() {
  std::array<char, 65536> buffer{};
  const ssize_t count = ::read(fromProgram.number(), buffer.data(), buffer.size());
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (count <= 0) return end();
  unread.append(buffer.data(), static_cast<std::size_t>(count));
  takeLines();
  if (unread.size() > longestLine) end();
}

void LineProcess::State::takeLines() {
  for (std::size_t mark = unread.find('\n'); mark != std::string::npos; mark = unread.find('\n')) {
    const std::string whole = unread.substr(0, mark);
    unread.erase(0, mark + 1);
    if (!hasOwner || hasEnded) return;
    line(whole);
  }
}

void LineProcess::State::end() {
  outputSource.reset();
  inputSource.reset();
  if (std::exchange(hasEnded, true) || !hasOwner) return;
  ended();
}

int LineProcess::State::onInput(sd_event_source*, int, std::uint32_t, void* state) {
  static_cast<State*>(state)->write();
  return 0;
}

int LineProcess::State::onOutput(sd_event_source*, int, std::uint32_t, void* state) {
  const auto self = static_cast<State*>(state)->shared_from_this();
  self->runLoop.perform([&self] { self->read(); });
  return 0;
}

// What it wrote last may still be unread.
int LineProcess::State::onEnd(sd_event_source*, const siginfo_t*, void* state) {
  const auto self = static_cast<State*>(state)->shared_from_this();
  self->runLoop.perform([&self] {
    while (self->outputSource && self->hasOwner && !self->hasEnded) {
      const std::size_t before = self->unread.size();
      self->read();
      if (self->unread.size() == before) break;
    }
    self->end();
  });
  self->endSource.reset();
  self->whileRunning.reset();
  return 0;
}

std::unique_ptr<LineProcess> LineProcess::start(LinuxRunLoop& runLoop, const std::string& path,
                                                Line line, Ended ended) {
  auto state = std::make_shared<State>(runLoop, std::move(line), std::move(ended));
  if (!state->spawn(path)) return nullptr;
  if (!state->addSources()) {
    kill(state->process, SIGKILL);
    waitpid(state->process, nullptr, 0);
    state->whileRunning.reset();
    return nullptr;
  }
  return std::unique_ptr<LineProcess>(new LineProcess(std::move(state)));
}

LineProcess::~LineProcess() {
  state_->hasOwner = false;
  state_->outputSource.reset();
  state_->inputSource.reset();
  state_->toProgram.reset();
}

void LineProcess::send(const std::string& line) {
  if (state_->hasEnded) return;
  state_->unsent += line + '\n';
  state_->write();
}

}  // namespace kestro
