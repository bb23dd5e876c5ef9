// Reads the properties of many windows in one round trip. Used by X11Desktop alone.
#pragma once

#include <span>

#include "linux/windows/x11/X11Connection.h"
#include "linux/windows/x11/X11Snapshot.h"

namespace kestro {

// The windows in the given order, without those that are gone and those of the desktop. A window on
// another desktop than `currentDesktop` (absent: there is but one) is not on screen. `xcb` is what
// `connection` holds. Absent when the server does not answer.
std::optional<std::vector<X11Window>> readWindows(X11Connection& connection, xcb_connection_t* xcb,
                                                  std::span<const X11WindowIdentifier> identifiers,
                                                  std::optional<std::uint32_t> currentDesktop);

// The members of a property of 32-bit values. `reply` may be null.
std::vector<std::uint32_t> numbersOfProperty(const xcb_get_property_reply_t* reply);

// Empty without a property of bytes; valid while the reply is.
std::string_view bytesOfProperty(const xcb_get_property_reply_t* reply);
// The text when it is UTF-8, else the text taken as Latin-1, which old properties hold.
std::string textOfProperty(const xcb_get_property_reply_t* reply);

}  // namespace kestro
