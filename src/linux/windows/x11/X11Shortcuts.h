// Keys grabbed from the X server, on a connection of their own, served by the run loop. They are
// grabbed anew when the keyboard's layout has changed, and when the server has gone and come back.
// Main thread only.
#pragma once

#include <xcb/xcb.h>

#include <list>
#include <memory>
#include <optional>

#include "linux/process/BackOff.h"
#include "linux/process/LinuxRunLoop.h"
#include "linux/windows/x11/X11ConnectionAttempt.h"
#include "platform/GlobalShortcuts.h"
#include "platform/SystemLog.h"

namespace kestro {

// The X keysym of a stored shortcut's key: a character, or the name of a key ("F5", "space").
// Absent: there is no such key.
std::optional<std::uint32_t> keysymOf(std::string_view key);

class X11Shortcuts final : public GlobalShortcuts {
 public:
  X11Shortcuts(LinuxRunLoop& runLoop, SystemLog& log) : runLoop_(runLoop), log_(log) {}
  ~X11Shortcuts() override;
  X11Shortcuts(const X11Shortcuts&) = delete;
  X11Shortcuts& operator=(const X11Shortcuts&) = delete;

  // The modifiers are the keys of the same name; Command is the Super key. Null when another
  // program has the key, which the log says, or there is no such key.
  std::unique_ptr<GlobalShortcut> grab(const KeyEquivalent& keys,
                                       std::function<void()> pressed) override;

 private:
  class Grab;
  struct Wanted {
    KeyEquivalent keys;
    std::function<void()> pressed;
    std::uint16_t modifiers = 0;
    std::vector<xcb_keycode_t> codes;  // grabbed now
    bool hasReportedRefusal = false;
  };
  enum class Outcome { grabbed, refused, unknown };

  static int onReadable(sd_event_source* source, int descriptor, std::uint32_t events,
                        void* shortcuts);
  bool connect();
  bool takeConnection();
  void disconnect();
  void connectLater();
  bool waitForAnswer(std::uint32_t sequence);
  Outcome grabNow(Wanted& wanted);
  std::vector<xcb_keycode_t> codesOf(std::uint32_t keysym) const;
  void ungrab(Wanted& wanted);
  void grabAllAnew();
  void readEvents();
  void press(const xcb_key_press_event_t& event);
  void release(const Wanted* wanted);

  LinuxRunLoop& runLoop_;
  SystemLog& log_;
  BackOff backOff_{std::chrono::seconds(1), std::chrono::seconds(30)};
  std::unique_ptr<X11ConnectionAttempt> attempt_;
  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = 0;
  sd_event_source* source_ = nullptr;
  std::unique_ptr<Timer> retry_;
  std::unique_ptr<Timer> renewal_;
  std::list<Wanted> wanted_;
};

}  // namespace kestro
