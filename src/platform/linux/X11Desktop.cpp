#include "platform/linux/X11Desktop.h"

#include <xcb/randr.h>

#include <algorithm>

#include "platform/linux/X11WindowReader.h"

namespace kestro {
namespace {

// More windows than a desktop has; bounds what one snapshot asks for.
constexpr std::size_t mostWindows = 256;
constexpr std::uint32_t longestWindowList = 4096;
// How far below the root an input focus may lie.
constexpr int deepestFocus = 32;

struct RootProperties {
  std::vector<X11WindowIdentifier> clients;  // front to back
  X11WindowIdentifier activeWindow = 0;
  X11WindowIdentifier focus = 0;
  std::optional<std::uint32_t> currentDesktop;
  X11WindowIdentifier windowManager = 0;  // its own window; 0 without a living one
  std::vector<Rect> monitors;
};

Rect rectangle(int x, int y, unsigned width, unsigned height) {
  return {{static_cast<double>(x), static_cast<double>(y)},
          {static_cast<double>(width), static_cast<double>(height)}};
}

class RootReader {
 public:
  explicit RootReader(X11Connection& connection)
      : connection_(connection), xcb_(connection.get()) {}

  // Absent when the server does not answer. A window manager that was there at the last snapshot is
  // looked at in the same round trip.
  std::optional<RootProperties> read(X11WindowIdentifier lastWindowManager) {
    const auto active = property(X11Atom::netActiveWindow);
    const auto stacking = property(X11Atom::netClientListStacking);
    const auto desktop = property(X11Atom::netCurrentDesktop);
    const auto manager = property(X11Atom::netSupportingWmCheck);
    const auto lastManager = property(X11Atom::netSupportingWmCheck, lastWindowManager);
    const auto focus = xcb_get_input_focus(xcb_);
    const auto geometry = xcb_get_geometry(xcb_, connection_.root());
    const auto monitors = connection_.hasMonitors()
                              ? xcb_randr_get_monitors(xcb_, connection_.root(), 1)
                              : xcb_randr_get_monitors_cookie_t{};
    if (!connection_.waitForAnswers()) return std::nullopt;
    RootProperties root;
    root.activeWindow = firstNumber(active).value_or(0);
    root.clients = numbers(stacking);
    std::ranges::reverse(root.clients);
    root.currentDesktop = firstNumber(desktop);
    root.windowManager = firstNumber(manager).value_or(0);
    const bool isConfirmed = firstNumber(lastManager) == root.windowManager;
    root.focus = focusOf(focus);
    root.monitors = monitorsOf(monitors, geometry);
    if (root.windowManager != 0 && !isConfirmed) root.windowManager = living(root.windowManager);
    return root;
  }

  // The root's children, front to back.
  std::vector<X11WindowIdentifier> topLevels() {
    return childrenAndParent(connection_.root()).first;
  }

  // The ancestor of the window that is a child of the root.
  X11WindowIdentifier topLevelOf(X11WindowIdentifier window) {
    for (int depth = 0; depth < deepestFocus; ++depth) {
      const X11WindowIdentifier parent = childrenAndParent(window).second;
      if (parent == 0) return 0;
      if (parent == connection_.root()) return window;
      window = parent;
    }
    return 0;
  }

 private:
  xcb_get_property_cookie_t property(X11Atom atom) const {
    return property(atom, connection_.root());
  }
  xcb_get_property_cookie_t property(X11Atom atom, X11WindowIdentifier window) const {
    return xcb_get_property(xcb_, 0, window, connection_.atom(atom), XCB_ATOM_ANY, 0,
                            longestWindowList);
  }
  // A window manager that died leaves its mark on the root window; its own window names itself.
  X11WindowIdentifier living(X11WindowIdentifier windowManager) {
    const auto cookie = property(X11Atom::netSupportingWmCheck, windowManager);
    if (!connection_.waitForAnswers()) return 0;
    return firstNumber(cookie) == windowManager ? windowManager : 0;
  }
  std::vector<std::uint32_t> numbers(xcb_get_property_cookie_t cookie) const {
    const X11Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb_, cookie, nullptr));
    return numbersOfProperty(reply.get());
  }
  std::optional<std::uint32_t> firstNumber(xcb_get_property_cookie_t cookie) const {
    const auto all = numbers(cookie);
    return all.empty() ? std::nullopt : std::optional(all.front());
  }

  X11WindowIdentifier focusOf(xcb_get_input_focus_cookie_t cookie) const {
    const X11Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(xcb_, cookie, nullptr));
    const bool isWindow = reply && reply->focus != XCB_INPUT_FOCUS_NONE &&
                          reply->focus != XCB_INPUT_FOCUS_POINTER_ROOT;
    return isWindow ? reply->focus : 0;
  }

  std::vector<Rect> monitorsOf(xcb_randr_get_monitors_cookie_t monitorsCookie,
                               xcb_get_geometry_cookie_t rootCookie) const {
    const X11Reply<xcb_get_geometry_reply_t> root(
        xcb_get_geometry_reply(xcb_, rootCookie, nullptr));
    std::vector<Rect> monitors;
    if (connection_.hasMonitors()) {
      const X11Reply<xcb_randr_get_monitors_reply_t> reply(
          xcb_randr_get_monitors_reply(xcb_, monitorsCookie, nullptr));
      if (reply) monitors = monitorsOf(*reply);
    }
    if (monitors.empty() && root) monitors.push_back(rectangle(0, 0, root->width, root->height));
    return monitors;
  }

  static std::vector<Rect> monitorsOf(const xcb_randr_get_monitors_reply_t& reply) {
    std::vector<Rect> monitors;
    auto position = xcb_randr_get_monitors_monitors_iterator(&reply);
    for (; position.rem > 0; xcb_randr_monitor_info_next(&position)) {
      const auto& monitor = *position.data;
      const auto place = monitor.primary ? monitors.begin() : monitors.end();
      monitors.insert(place, rectangle(monitor.x, monitor.y, monitor.width, monitor.height));
    }
    return monitors;
  }

  std::pair<std::vector<X11WindowIdentifier>, X11WindowIdentifier> childrenAndParent(
      X11WindowIdentifier window) {
    const auto cookie = xcb_query_tree(xcb_, window);
    if (!connection_.waitForAnswers()) return {};
    const X11Reply<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(xcb_, cookie, nullptr));
    if (!reply) return {};
    const auto* first = xcb_query_tree_children(reply.get());
    std::vector<X11WindowIdentifier> children(first,
                                              first + xcb_query_tree_children_length(reply.get()));
    std::ranges::reverse(children);
    return {std::move(children), reply->parent};
  }

  X11Connection& connection_;
  xcb_connection_t* xcb_;
};

bool canBeActive(const X11Window& window) {
  return window.isOnScreen && window.process && window.type == X11WindowType::ordinary;
}

// Without a window manager nobody says which window is active: it is the one with the input focus,
// and when that follows the pointer, the frontmost one.
X11WindowIdentifier activeWithoutManager(const X11Snapshot& snapshot, X11WindowIdentifier focused) {
  if (const X11Window* window = snapshot.find(focused); window && canBeActive(*window)) {
    return focused;
  }
  const auto found = std::ranges::find_if(snapshot.windows, canBeActive);
  return found == snapshot.windows.end() ? 0 : found->identifier;
}

X11Snapshot take(X11Connection& connection, X11WindowIdentifier lastWindowManager) {
  X11Snapshot snapshot;
  if (!connection.get()) return snapshot;
  RootReader reader(connection);
  auto root = reader.read(lastWindowManager);
  if (!root) return snapshot;
  snapshot.monitors = root->monitors;
  snapshot.windowManager = root->windowManager;
  snapshot.activeWindow = root->activeWindow;
  if (root->windowManager == 0) root->clients = reader.topLevels();
  if (root->clients.size() > mostWindows) root->clients.resize(mostWindows);
  snapshot.windows = readWindows(connection, root->clients,
                                 root->windowManager != 0 ? root->currentDesktop : std::nullopt);
  if (root->windowManager == 0) {
    const auto focused = root->focus == 0 ? 0 : reader.topLevelOf(root->focus);
    snapshot.activeWindow = activeWithoutManager(snapshot, focused);
  }
  return snapshot;
}

}  // namespace

const X11Window* X11Snapshot::find(X11WindowIdentifier identifier) const {
  const auto found = std::ranges::find(windows, identifier, &X11Window::identifier);
  return found == windows.end() ? nullptr : &*found;
}

const X11Snapshot& X11Desktop::snapshot() {
  const std::uint64_t generation = generation_.current();
  if (takenIn_ != generation) {
    snapshot_ = take(connection_, snapshot_.windowManager);
    takenIn_ = generation;
  }
  return snapshot_;
}

}  // namespace kestro
