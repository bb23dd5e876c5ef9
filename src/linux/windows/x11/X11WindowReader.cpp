#include "linux/windows/x11/X11WindowReader.h"

#include <xcb/res.h>

#include <algorithm>

#include "foundation/CompoundText.h"
#include "foundation/Utf8.h"

namespace kestro {
namespace {

constexpr std::uint32_t longestProperty = 1024;  // in units of four bytes
constexpr std::uint32_t allDesktops = 0xffffffff;

struct WindowCookies {
  xcb_get_property_cookie_t netName;
  xcb_get_property_cookie_t name;
  xcb_get_property_cookie_t process;
  xcb_get_property_cookie_t windowClass;
  xcb_get_property_cookie_t state;
  xcb_get_property_cookie_t type;
  xcb_get_property_cookie_t desktop;
  xcb_get_property_cookie_t gtkApplication;
  xcb_get_geometry_cookie_t geometry;
  xcb_translate_coordinates_cookie_t position;
  xcb_get_window_attributes_cookie_t attributes;
  xcb_res_query_client_ids_cookie_t client;
};

class WindowReader {
 public:
  WindowReader(X11Connection& connection, xcb_connection_t* xcb,
               std::optional<std::uint32_t> currentDesktop)
      : connection_(connection), xcb_(xcb), currentDesktop_(currentDesktop) {}

  WindowCookies request(X11WindowIdentifier window) const {
    const auto property = [&](xcb_atom_t atom) {
      return xcb_get_property(xcb_, 0, window, atom, XCB_ATOM_ANY, 0, longestProperty);
    };
    const xcb_res_client_id_spec_t owner{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return {property(connection_.atom(X11Atom::netWmName)),
            property(XCB_ATOM_WM_NAME),
            property(connection_.atom(X11Atom::netWmPid)),
            property(XCB_ATOM_WM_CLASS),
            property(connection_.atom(X11Atom::netWmState)),
            property(connection_.atom(X11Atom::netWmWindowType)),
            property(connection_.atom(X11Atom::netWmDesktop)),
            property(connection_.atom(X11Atom::gtkApplicationId)),
            xcb_get_geometry(xcb_, window),
            xcb_translate_coordinates(xcb_, window, connection_.root(), 0, 0),
            xcb_get_window_attributes(xcb_, window),
            connection_.hasResourceExtension() ? xcb_res_query_client_ids(xcb_, 1, &owner)
                                               : xcb_res_query_client_ids_cookie_t{}};
  }

  // Takes every reply, so that none stays queued. Absent when the window is gone.
  std::optional<X11Window> answer(X11WindowIdentifier identifier, const WindowCookies& cookies) {
    X11Window window;
    window.identifier = identifier;
    window.name = nameOf(cookies);
    window.process = processOf(cookies);
    readClass(window, cookies);
    window.gtkApplicationIdentifier = textOfProperty(property(cookies.gtkApplication).get());
    readState(window, cookies);
    window.type = typeOf(cookies);
    const bool isHere = isOnCurrentDesktop(cookies);
    const bool exists = readGeometry(window, cookies);
    window.isOnScreen = isViewable(cookies) && isHere && !window.isMinimized;
    if (!exists || window.type == X11WindowType::desktop) return std::nullopt;
    return window;
  }

 private:
  X11Reply<xcb_get_property_reply_t> property(xcb_get_property_cookie_t cookie) const {
    return X11Reply<xcb_get_property_reply_t>(xcb_get_property_reply(xcb_, cookie, nullptr));
  }
  std::vector<std::uint32_t> numbers(xcb_get_property_cookie_t cookie) const {
    return numbersOfProperty(property(cookie).get());
  }

  std::optional<std::string> nameOf(const WindowCookies& cookies) const {
    const auto netName = property(cookies.netName);
    const auto oldName = property(cookies.name);
    for (const auto* reply : {netName.get(), oldName.get()}) {
      if (!reply || reply->type == XCB_ATOM_NONE) continue;
      const bool isCompound = reply->type == connection_.atom(X11Atom::compoundText);
      return withoutControlCharacters(isCompound ? utf8FromCompoundText(bytesOfProperty(reply))
                                                 : textOfProperty(reply));
    }
    return std::nullopt;
  }

  std::optional<ProcessIdentifier> processOf(const WindowCookies& cookies) const {
    const auto named = numbers(cookies.process);
    if (const auto connected = clientProcess(cookies)) return connected;
    if (named.empty() || named.front() == 0) return std::nullopt;
    return static_cast<ProcessIdentifier>(named.front());
  }

  std::optional<ProcessIdentifier> clientProcess(const WindowCookies& cookies) const {
    if (!connection_.hasResourceExtension()) return std::nullopt;
    const X11Reply<xcb_res_query_client_ids_reply_t> reply(
        xcb_res_query_client_ids_reply(xcb_, cookies.client, nullptr));
    if (!reply) return std::nullopt;
    auto position = xcb_res_query_client_ids_ids_iterator(reply.get());
    for (; position.rem > 0; xcb_res_client_id_value_next(&position)) {
      const bool isProcess = position.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID;
      if (!isProcess || xcb_res_client_id_value_value_length(position.data) < 1) continue;
      const auto process = *xcb_res_client_id_value_value(position.data);
      if (process != 0) return static_cast<ProcessIdentifier>(process);
    }
    return std::nullopt;
  }

  void readClass(X11Window& window, const WindowCookies& cookies) const {
    const std::string both = textOfProperty(property(cookies.windowClass).get());
    const std::size_t end = std::min(both.find('\0'), both.size());
    window.instanceName = both.substr(0, end);
    if (end < both.size()) window.className = both.substr(end + 1);
    if (!window.className.empty() && window.className.back() == '\0') window.className.pop_back();
  }

  void readState(X11Window& window, const WindowCookies& cookies) const {
    const auto states = numbers(cookies.state);
    const auto has = [&](X11Atom state) {
      return std::ranges::find(states, connection_.atom(state)) != states.end();
    };
    window.isFullScreen = has(X11Atom::netWmStateFullscreen);
    window.isMinimized = has(X11Atom::netWmStateHidden);
    window.isModal = has(X11Atom::netWmStateModal);
  }

  // The first type that is known here: a window names its types in order of preference.
  X11WindowType typeOf(const WindowCookies& cookies) const {
    static constexpr std::pair<X11Atom, X11WindowType> types[]{
        {X11Atom::netWmWindowTypeDesktop, X11WindowType::desktop},
        {X11Atom::netWmWindowTypeDock, X11WindowType::dock},
        {X11Atom::netWmWindowTypeMenu, X11WindowType::menu},
        {X11Atom::netWmWindowTypeDropdownMenu, X11WindowType::menu},
        {X11Atom::netWmWindowTypePopupMenu, X11WindowType::menu},
        {X11Atom::netWmWindowTypeTooltip, X11WindowType::tooltip},
        {X11Atom::netWmWindowTypeNotification, X11WindowType::notification},
    };
    for (const std::uint32_t named : numbers(cookies.type)) {
      for (const auto& [atom, type] : types) {
        if (connection_.atom(atom) == named) return type;
      }
    }
    return X11WindowType::ordinary;
  }

  bool isOnCurrentDesktop(const WindowCookies& cookies) const {
    const auto desktop = numbers(cookies.desktop);
    return desktop.empty() || !currentDesktop_ || desktop.front() == allDesktops ||
           desktop.front() == *currentDesktop_;
  }

  bool readGeometry(X11Window& window, const WindowCookies& cookies) const {
    const X11Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(xcb_, cookies.geometry, nullptr));
    const X11Reply<xcb_translate_coordinates_reply_t> position(
        xcb_translate_coordinates_reply(xcb_, cookies.position, nullptr));
    if (!geometry || !position) return false;
    window.bounds = {{static_cast<double>(position->dst_x), static_cast<double>(position->dst_y)},
                     {static_cast<double>(geometry->width), static_cast<double>(geometry->height)}};
    return true;
  }

  bool isViewable(const WindowCookies& cookies) const {
    const X11Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(xcb_, cookies.attributes, nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
           attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
  }

  X11Connection& connection_;
  xcb_connection_t* xcb_;
  std::optional<std::uint32_t> currentDesktop_;
};

}  // namespace

std::optional<std::vector<X11Window>> readWindows(X11Connection& connection, xcb_connection_t* xcb,
                                                  std::span<const X11WindowIdentifier> identifiers,
                                                  std::optional<std::uint32_t> currentDesktop) {
  WindowReader reader(connection, xcb, currentDesktop);
  std::vector<WindowCookies> cookies;
  for (const X11WindowIdentifier identifier : identifiers) {
    cookies.push_back(reader.request(identifier));
  }
  if (!connection.waitForAnswers()) return std::nullopt;
  std::vector<X11Window> windows;
  for (std::size_t index = 0; index < identifiers.size(); ++index) {
    auto window = reader.answer(identifiers[index], cookies[index]);
    if (window) windows.push_back(std::move(*window));
  }
  return windows;
}

std::vector<std::uint32_t> numbersOfProperty(const xcb_get_property_reply_t* reply) {
  if (!reply || reply->format != 32) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply));
  return {first, first + xcb_get_property_value_length(reply) / 4};
}

std::string_view bytesOfProperty(const xcb_get_property_reply_t* reply) {
  if (!reply || reply->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply)),
          static_cast<std::size_t>(xcb_get_property_value_length(reply))};
}

std::string textOfProperty(const xcb_get_property_reply_t* reply) {
  const std::string text(bytesOfProperty(reply));
  return isValidUtf8(text) ? text : utf8FromLatin1(text);
}

}  // namespace kestro
