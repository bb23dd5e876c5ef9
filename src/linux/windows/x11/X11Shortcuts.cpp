#include "linux/windows/x11/X11Shortcuts.h"

#include <poll.h>
#include <sys/epoll.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <utility>

#include "foundation/UnicodeText.h"
#include "linux/windows/x11/X11Connection.h"

namespace kestro {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds longestAnswer{1000};
constexpr milliseconds longestConnecting{500};
// A new layout announces itself by many events.
constexpr Seconds renewalDelay{0.2};
// Of the modifiers' state, what a shortcut may hold. The locks (Caps Lock, and Num Lock, which is
// Mod2 on the usual keyboards) do not count.
constexpr std::uint16_t shortcutModifiers =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
constexpr std::array<std::uint16_t, 4> lockCombinations{0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                                        XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

struct NamedKey {
  std::string_view name;
  std::uint32_t keysym;
};
// From X11's keysymdef.h.
constexpr std::array<NamedKey, 14> namedKeys{{{"space", 0x20},
                                              {"return", 0xff0d},
                                              {"tab", 0xff09},
                                              {"escape", 0xff1b},
                                              {"delete", 0xff08},
                                              {"forwarddelete", 0xffff},
                                              {"left", 0xff51},
                                              {"up", 0xff52},
                                              {"right", 0xff53},
                                              {"down", 0xff54},
                                              {"home", 0xff50},
                                              {"end", 0xff57},
                                              {"pageup", 0xff55},
                                              {"pagedown", 0xff56}}};
constexpr std::uint32_t firstFunctionKey = 0xffbe;
constexpr std::uint32_t mostFunctionKeys = 35;
constexpr std::uint32_t unicodeKeysyms = 0x01000000;

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& character : lower) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character + 32);
  }
  return lower;
}

std::optional<std::uint32_t> functionKeysym(std::string_view name) {
  if (name.size() < 2 || name.front() != 'f') return std::nullopt;
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(name.data() + 1, name.data() + name.size(), number);
  if (error != std::errc{} || end != name.data() + name.size()) return std::nullopt;
  if (number < 1 || number > mostFunctionKeys) return std::nullopt;
  return firstFunctionKey + number - 1;
}

std::uint16_t modifiersOf(const ModifierKeys& keys) {
  std::uint16_t mask = 0;
  for (const ModifierKey key : keys) {
    switch (key) {
      case ModifierKey::command:
        mask |= XCB_MOD_MASK_4;
        break;
      case ModifierKey::option:
        mask |= XCB_MOD_MASK_1;
        break;
      case ModifierKey::control:
        mask |= XCB_MOD_MASK_CONTROL;
        break;
      case ModifierKey::shift:
        mask |= XCB_MOD_MASK_SHIFT;
        break;
    }
  }
  return mask;
}

std::string shortcutText(const KeyEquivalent& keys) {
  constexpr std::array<std::pair<ModifierKey, const char*>, 4> names{
      {{ModifierKey::control, "Ctrl+"},
       {ModifierKey::option, "Alt+"},
       {ModifierKey::shift, "Shift+"},
       {ModifierKey::command, "Super+"}}};
  std::string text;
  for (const auto& [modifier, name] : names) {
    if (std::ranges::find(keys.modifiers, modifier) != keys.modifiers.end()) text += name;
  }
  return text + keys.key;
}

}  // namespace

std::optional<std::uint32_t> keysymOf(std::string_view key) {
  const auto characters = codePoints(key);
  if (characters.size() == 1 && characters.front().value > 0) {
    const auto code = static_cast<std::uint32_t>(characters.front().value);
    if (code >= 'A' && code <= 'Z') return code + 32;
    return code < 0x100 ? code : unicodeKeysyms + code;
  }
  const std::string name = lowerCase(key);
  const auto named = std::ranges::find(namedKeys, std::string_view(name), &NamedKey::name);
  return named == namedKeys.end() ? functionKeysym(name) : std::optional(named->keysym);
}

// Ends the grab when it goes.
class X11Shortcuts::Grab final : public GlobalShortcut {
 public:
  Grab(X11Shortcuts& shortcuts, const Wanted* wanted) : shortcuts_(shortcuts), wanted_(wanted) {}
  ~Grab() override { shortcuts_.release(wanted_); }
  Grab(const Grab&) = delete;
  Grab& operator=(const Grab&) = delete;

 private:
  X11Shortcuts& shortcuts_;
  const Wanted* wanted_;
};

X11Shortcuts::~X11Shortcuts() {
  disconnect();
}

// One that cannot be had now for want of a server may be later.
std::unique_ptr<GlobalShortcut> X11Shortcuts::grab(const KeyEquivalent& keys,
                                                   std::function<void()> pressed) {
  if (!keysymOf(keys.key)) {
    log_.write("the shortcut " + shortcutText(keys) + " names no key; it does nothing");
    return nullptr;
  }
  wanted_.push_back({keys, std::move(pressed), modifiersOf(keys.modifiers), {}, false});
  const bool wasConnected = connection_ != nullptr;
  if (!wasConnected && !connect()) {
    connectLater();
  } else if (wasConnected && grabNow(wanted_.back()) == Outcome::refused) {
    wanted_.pop_back();
    return nullptr;
  }
  return std::make_unique<Grab>(*this, &wanted_.back());
}

void X11Shortcuts::release(const Wanted* wanted) {
  const auto found =
      std::ranges::find_if(wanted_, [&](const Wanted& entry) { return &entry == wanted; });
  if (found == wanted_.end()) return;
  ungrab(*found);
  wanted_.erase(found);
}

// Grabs everything that is wanted.
bool X11Shortcuts::connect() {
  retry_.reset();
  if (!std::getenv("DISPLAY") || !takeConnection()) return false;
  const int descriptor = xcb_get_file_descriptor(connection_);
  if (sd_event_add_io(runLoop_.event(), &source_, descriptor, EPOLLIN, onReadable, this) < 0) {
    disconnect();
    return false;
  }
  backOff_.noteSuccess();
  grabAllAnew();
  return connection_ != nullptr;
}

bool X11Shortcuts::takeConnection() {
  if (!attempt_) attempt_ = std::make_unique<X11ConnectionAttempt>();
  const auto outcome = attempt_->wait(longestConnecting);
  if (!outcome) return false;
  attempt_.reset();
  connection_ = outcome->connection;
  auto screens = xcb_setup_roots_iterator(
      xcb_connection_has_error(connection_) ? nullptr : xcb_get_setup(connection_));
  for (int screen = outcome->screen; screen > 0 && screens.rem > 1; --screen)
    xcb_screen_next(&screens);
  if (screens.rem == 0) {
    disconnect();
    return false;
  }
  root_ = screens.data->root;
  return true;
}

void X11Shortcuts::disconnect() {
  if (source_) sd_event_source_disable_unref(source_);
  source_ = nullptr;
  renewal_.reset();
  for (Wanted& wanted : wanted_)
    wanted.codes.clear();
  if (connection_) xcb_disconnect(connection_);
  connection_ = nullptr;
}

void X11Shortcuts::connectLater() {
  if (!std::getenv("DISPLAY")) return;
  backOff_.noteFailure(steady_clock::now());
  retry_ = runLoop_.scheduleAfter(backOff_.delay(), [this] {
    if (!wanted_.empty() && !connect()) connectLater();
  });
}

// xcb's own waits have no bound.
bool X11Shortcuts::waitForAnswer(std::uint32_t sequence) {
  xcb_flush(connection_);
  const auto deadline = steady_clock::now() + longestAnswer;
  while (true) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    const bool arrived = xcb_poll_for_reply(connection_, sequence, &reply, &error) != 0;
    const X11Reply<void> replyOwner(reply);
    const X11Reply<xcb_generic_error_t> errorOwner(error);
    if (arrived) return true;
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    if (left.count() <= 0 || xcb_connection_has_error(connection_)) return false;
    pollfd entry{xcb_get_file_descriptor(connection_), POLLIN, 0};
    poll(&entry, 1, static_cast<int>(left.count()));
  }
}

std::vector<xcb_keycode_t> X11Shortcuts::codesOf(std::uint32_t keysym) const {
  std::vector<xcb_keycode_t> codes;
  xcb_key_symbols_t* symbols = xcb_key_symbols_alloc(connection_);
  if (!symbols) return codes;
  const std::unique_ptr<xcb_keycode_t, X11ReplyDeleter> list(
      xcb_key_symbols_get_keycode(symbols, keysym));
  for (const xcb_keycode_t* code = list.get(); code && *code != XCB_NO_SYMBOL; ++code)
    codes.push_back(*code);
  xcb_key_symbols_free(symbols);
  return codes;
}

X11Shortcuts::Outcome X11Shortcuts::grabNow(Wanted& wanted) {
  // The server is known to answer before xcb waits for it without a bound.
  if (!waitForAnswer(xcb_get_input_focus(connection_).sequence)) return Outcome::unknown;
  const auto keysym = keysymOf(wanted.keys.key);
  wanted.codes = keysym ? codesOf(*keysym) : std::vector<xcb_keycode_t>();
  std::vector<xcb_void_cookie_t> cookies;
  for (const xcb_keycode_t code : wanted.codes) {
    for (const std::uint16_t locks : lockCombinations) {
      cookies.push_back(xcb_grab_key_checked(connection_, 1, root_,
                                             static_cast<std::uint16_t>(wanted.modifiers | locks),
                                             code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
  }
  if (!waitForAnswer(xcb_get_input_focus(connection_).sequence)) return Outcome::unknown;
  bool isRefused = false;
  for (const xcb_void_cookie_t cookie : cookies) {
    const X11Reply<xcb_generic_error_t> error(xcb_request_check(connection_, cookie));
    isRefused = isRefused || error;
  }
  if (!isRefused) {
    wanted.hasReportedRefusal = false;
    return Outcome::grabbed;
  }
  ungrab(wanted);
  if (!std::exchange(wanted.hasReportedRefusal, true)) {
    log_.write("another program has the shortcut " + shortcutText(wanted.keys) +
               "; choose another one");
  }
  return Outcome::refused;
}

void X11Shortcuts::ungrab(Wanted& wanted) {
  if (!connection_) return;
  for (const xcb_keycode_t code : wanted.codes) {
    for (const std::uint16_t locks : lockCombinations) {
      xcb_ungrab_key(connection_, code, root_,
                     static_cast<std::uint16_t>(wanted.modifiers | locks));
    }
  }
  wanted.codes.clear();
  xcb_flush(connection_);
}

void X11Shortcuts::grabAllAnew() {
  for (Wanted& wanted : wanted_)
    ungrab(wanted);
  for (Wanted& wanted : wanted_) {
    if (grabNow(wanted) != Outcome::unknown) continue;
    disconnect();
    return connectLater();
  }
  readEvents();
}

int X11Shortcuts::onReadable(sd_event_source*, int, std::uint32_t, void* shortcuts) {
  auto* self = static_cast<X11Shortcuts*>(shortcuts);
  self->runLoop_.perform([self] { self->readEvents(); });
  return 0;
}

void X11Shortcuts::readEvents() {
  while (connection_) {
    const X11Reply<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
    if (!event) break;
    const int kind = event->response_type & 0x7f;
    if (kind == XCB_MAPPING_NOTIFY) {
      renewal_ = runLoop_.scheduleAfter(renewalDelay, [this] { grabAllAnew(); });
    } else if (kind == XCB_KEY_PRESS) {
      // The event is as long as its kind.
      press(*reinterpret_cast<const xcb_key_press_event_t*>(event.get()));
    }
  }
  if (!connection_ || !xcb_connection_has_error(connection_)) return;
  disconnect();
  connectLater();
}

void X11Shortcuts::press(const xcb_key_press_event_t& event) {
  const auto held = static_cast<std::uint16_t>(event.state & shortcutModifiers);
  for (const Wanted& wanted : wanted_) {
    const bool isCode = std::ranges::find(wanted.codes, event.detail) != wanted.codes.end();
    if (isCode && wanted.modifiers == held) return runLoop_.post(wanted.pressed);
  }
}

}  // namespace kestro
