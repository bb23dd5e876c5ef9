#include "linux/windows/x11/X11Connection.h"

#include <poll.h>
#include <xcb/randr.h>
#include <xcb/res.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <string_view>

namespace kestro {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds longestWait{1000};

constexpr std::array<std::string_view, static_cast<std::size_t>(X11Atom::count)> atomNames{
    "_NET_ACTIVE_WINDOW",
    "_NET_CLIENT_LIST_STACKING",
    "_NET_CURRENT_DESKTOP",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_WM_DESKTOP",
    "_NET_WM_NAME",
    "_NET_WM_PID",
    "_NET_WM_STATE",
    "_NET_WM_STATE_FULLSCREEN",
    "_NET_WM_STATE_HIDDEN",
    "_NET_WM_STATE_MODAL",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "_NET_WM_WINDOW_TYPE_DOCK",
    "_NET_WM_WINDOW_TYPE_MENU",
    "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
    "_NET_WM_WINDOW_TYPE_POPUP_MENU",
    "_NET_WM_WINDOW_TYPE_TOOLTIP",
    "_NET_WM_WINDOW_TYPE_NOTIFICATION",
    "_GTK_APPLICATION_ID",
    "WM_STATE",
    "COMPOUND_TEXT",
};

bool isPresent(const xcb_query_extension_reply_t* extension) {
  return extension && extension->present;
}

xcb_window_t rootOfScreen(xcb_connection_t* connection, int screen) {
  auto position = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screen > 0 && position.rem > 1; --screen)
    xcb_screen_next(&position);
  return position.rem > 0 ? position.data->root : 0;
}

}  // namespace

X11Connection::~X11Connection() {
  disconnect();
}

xcb_connection_t* X11Connection::get() {
  if (connection_ && xcb_connection_has_error(connection_)) disconnect();
  if (pendingAnswer_) {
    // A server that owed an answer is not asked anything before it has given that one. The replies
    // that nobody takes any more go with the connection.
    if (!hasPendingAnswerArrived(milliseconds(0))) return nullptr;
    disconnect();
  }
  if (!connection_ && !connect()) return nullptr;
  discardEvents();
  return connection_;
}

bool X11Connection::connect() {
  if (!backOff_.isDue(steady_clock::now())) return false;
  if (takeNewConnection() && prepare()) {
    backOff_.noteSuccess();
    hasLoggedAbsence_ = false;
    return true;
  }
  disconnect();
  backOff_.noteFailure(steady_clock::now());
  if (!hasLoggedAbsence_) log_.write("no X server; windows and screens are unknown");
  hasLoggedAbsence_ = true;
  return false;
}

// Every client is sent a few events, whether it wants them or not; xcb keeps them until they are
// taken.
void X11Connection::discardEvents() {
  while (true) {
    const X11Reply<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
    if (!event) return;
  }
}

// An attempt that gets no answer goes on; the next call looks after it again.
bool X11Connection::takeNewConnection() {
  if (!attempt_) attempt_ = std::make_unique<X11ConnectionAttempt>();
  const auto outcome = attempt_->wait(longestWait);
  if (!outcome) return false;
  attempt_.reset();
  connection_ = outcome->connection;
  if (xcb_connection_has_error(connection_)) return false;
  root_ = rootOfScreen(connection_, outcome->screen);
  return root_ != 0;
}

bool X11Connection::prepare() {
  xcb_prefetch_extension_data(connection_, &xcb_res_id);
  xcb_prefetch_extension_data(connection_, &xcb_randr_id);
  std::array<xcb_intern_atom_cookie_t, atomNames.size()> cookies{};
  for (std::size_t index = 0; index < atomNames.size(); ++index) {
    cookies[index] =
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(atomNames[index].size()),
                        atomNames[index].data());
  }
  if (!waitForAnswers()) return false;
  for (std::size_t index = 0; index < atomNames.size(); ++index) {
    const X11Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection_, cookies[index], nullptr));
    atoms_[index] = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
  }
  hasResourceExtension_ = isPresent(xcb_get_extension_data(connection_, &xcb_res_id));
  hasMonitors_ = isPresent(xcb_get_extension_data(connection_, &xcb_randr_id));
  return true;
}

bool X11Connection::waitForAnswers() {
  if (!connection_) return false;
  pendingAnswer_ = xcb_get_input_focus(connection_);
  if (xcb_flush(connection_) <= 0) return false;
  return hasPendingAnswerArrived(longestWait);
}

// xcb's own waits have no bound, so the socket is polled and the last answer looked for.
bool X11Connection::hasPendingAnswerArrived(milliseconds wait) {
  const auto deadline = steady_clock::now() + wait;
  while (true) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    const bool arrived =
        xcb_poll_for_reply(connection_, pendingAnswer_->sequence, &reply, &error) != 0;
    const X11Reply<void> replyOwner(reply);
    const X11Reply<xcb_generic_error_t> errorOwner(error);
    if (xcb_connection_has_error(connection_)) return false;
    if (arrived) {
      pendingAnswer_.reset();
      return true;
    }
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd entry{xcb_get_file_descriptor(connection_), POLLIN, 0};
    poll(&entry, 1, static_cast<int>(left.count()));
  }
}

void X11Connection::disconnect() {
  pendingAnswer_.reset();
  if (connection_) xcb_disconnect(connection_);
  connection_ = nullptr;
}

}  // namespace kestro
