#include "linux/windows/x11/X11Desktop.h"

#include <xcb/randr.h>

#include <algorithm>

#include "linux/windows/x11/X11WindowReader.h"

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
  X11WindowIdentifier windowManager = 0;  // its own window, or what one that died left; 0: none
  bool isManagerConfirmed = false;
  std::vector<Rect> monitors;
};

Rect rectangle(int x, int y, unsigned width, unsigned height) {
  return {{static_cast<double>(x), static_cast<double>(y)},
          {static_cast<double>(width), static_cast<double>(height)}};
}

class RootReader {
 public:
  RootReader(X11Connection& connection, xcb_connection_t* xcb)
      : connection_(connection), xcb_(xcb) {}

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
    root.isManagerConfirmed = firstNumber(lastManager) == root.windowManager;
    root.focus = focusOf(focus);
    root.monitors = monitorsOf(monitors, geometry);
    return root;
  }

  // 0 without a living window manager; absent when the server does not answer. A window manager
  // that died leaves its mark on the root window; its own window names itself.
  std::optional<X11WindowIdentifier> livingManager(const RootProperties& root) {
    if (root.windowManager == 0 || root.isManagerConfirmed) return root.windowManager;
    const auto cookie = property(X11Atom::netSupportingWmCheck, root.windowManager);
    if (!connection_.waitForAnswers()) return std::nullopt;
    return firstNumber(cookie) == root.windowManager ? root.windowManager : 0;
  }

  // The root's children, front to back; absent when the server does not answer.
  std::optional<std::vector<X11WindowIdentifier>> topLevels() {
    auto family = childrenAndParent(connection_.root());
    return family ? std::optional(std::move(family->first)) : std::nullopt;
  }

  // The ancestor of the window that is a child of the root.
  X11WindowIdentifier topLevelOf(X11WindowIdentifier window) {
    for (int depth = 0; depth < deepestFocus; ++depth) {
      const auto family = childrenAndParent(window);
      if (!family || family->second == 0) return 0;
      if (family->second == connection_.root()) return window;
      window = family->second;
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

  using Family = std::pair<std::vector<X11WindowIdentifier>, X11WindowIdentifier>;

  // Absent when the server does not answer; empty for a window that is gone.
  std::optional<Family> childrenAndParent(X11WindowIdentifier window) {
    const auto cookie = xcb_query_tree(xcb_, window);
    if (!connection_.waitForAnswers()) return std::nullopt;
    const X11Reply<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(xcb_, cookie, nullptr));
    if (!reply) return Family{};
    const auto* first = xcb_query_tree_children(reply.get());
    std::vector<X11WindowIdentifier> children(first,
                                              first + xcb_query_tree_children_length(reply.get()));
    std::ranges::reverse(children);
    return Family{std::move(children), reply->parent};
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

// Holds what there is as soon as one wait has failed: a silent server costs one wait, not several.
X11Snapshot take(X11Connection& connection, X11WindowIdentifier lastWindowManager) {
  X11Snapshot snapshot;
  xcb_connection_t* xcb = connection.get();
  if (!xcb) return snapshot;
  RootReader reader(connection, xcb);
  auto root = reader.read(lastWindowManager);
  if (!root) return snapshot;
  snapshot.monitors = root->monitors;
  snapshot.activeWindow = root->activeWindow;
  const auto manager = reader.livingManager(*root);
  if (!manager) return snapshot;
  snapshot.windowManager = *manager;
  auto clients = *manager == 0 ? reader.topLevels() : std::move(root->clients);
  if (!clients) return snapshot;
  if (clients->size() > mostWindows) clients->resize(mostWindows);
  auto windows =
      readWindows(connection, xcb, *clients, *manager != 0 ? root->currentDesktop : std::nullopt);
  if (!windows) return snapshot;
  snapshot.windows = std::move(*windows);
  if (*manager == 0) {
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
