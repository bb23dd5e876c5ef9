// Modifier keys by the names that scenes, transcripts and preferences give them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Menu.h"

namespace kestro {

std::optional<ModifierKey> modifierNamed(std::string_view name);
std::vector<std::string> modifierNames(const ModifierKeys& modifiers);

}  // namespace kestro
