// Events of a transcript in few words, for people. Those that it knows no words for are absent.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/PropertyList.h"

namespace kestro {

// Calls, notifications, editors, time entries and support requests.
std::optional<std::string> eventText(std::string_view kind, const PropertyListDictionary& fields);

}  // namespace kestro
