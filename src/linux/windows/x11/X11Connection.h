// One connection to the X server, over xcb: a server that goes away is an error code here, never an
// exit. Connects again by itself, with growing delays, and waits for answers for a bounded time, so
// that a server that has stopped answering does not stop the helper. Main thread only.
#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>

#include "linux/process/BackOff.h"
#include "linux/windows/x11/X11ConnectionAttempt.h"
#include "platform/SystemLog.h"

namespace kestro {

enum class X11Atom : std::size_t {
  netActiveWindow,
  netClientListStacking,
  netCurrentDesktop,
  netSupportingWmCheck,
  netWmDesktop,
  netWmName,
  netWmPid,
  netWmState,
  netWmStateFullscreen,
  netWmStateHidden,
  netWmStateModal,
  netWmWindowType,
  netWmWindowTypeDesktop,
  netWmWindowTypeDock,
  netWmWindowTypeMenu,
  netWmWindowTypeDropdownMenu,
  netWmWindowTypePopupMenu,
  netWmWindowTypeTooltip,
  netWmWindowTypeNotification,
  gtkApplicationId,
  wmState,
  compoundText,
  count
};

// A reply of xcb's, freed with free().
struct X11ReplyDeleter {
  void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using X11Reply = std::unique_ptr<Reply, X11ReplyDeleter>;

class X11Connection {
 public:
  explicit X11Connection(SystemLog& log) : log_(log) {}
  ~X11Connection();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;

  // The connection, made when there is none and a try is due; null when there is no server, or one
  // that still owes an answer.
  xcb_connection_t* get();
  xcb_window_t root() const { return root_; }
  xcb_atom_t atom(X11Atom name) const { return atoms_[static_cast<std::size_t>(name)]; }
  bool hasResourceExtension() const { return hasResourceExtension_; }
  bool hasMonitors() const { return hasMonitors_; }

  // Sends what is queued and waits until the server has answered all of it. False when it does not
  // within a second, or the connection is lost; replies are then not to be asked for.
  bool waitForAnswers();

 private:
  bool connect();
  bool takeNewConnection();
  bool prepare();
  void discardEvents();
  bool hasPendingAnswerArrived(std::chrono::milliseconds wait);
  void disconnect();

  SystemLog& log_;
  BackOff backOff_{std::chrono::seconds(1), std::chrono::seconds(30)};
  bool hasLoggedAbsence_ = false;
  std::unique_ptr<X11ConnectionAttempt> attempt_;  // while a server has not answered yet
  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = 0;
  std::array<xcb_atom_t, static_cast<std::size_t>(X11Atom::count)> atoms_{};
  bool hasResourceExtension_ = false;
  bool hasMonitors_ = false;
  std::optional<xcb_get_input_focus_cookie_t> pendingAnswer_;
};

}  // namespace kestro
