// The menu of the status item as it is before anything has filled its rows.
#pragma once

#include <string_view>

#include "platform/Menu.h"

namespace kestro {

class Process;

// The rows of resources/MainMenu.json, which describes the format, with their titles in the user's
// language.
Menu makeMainMenu(Process& process);

// That file's text, which is part of the program. CMake writes the source of this function.
std::string_view mainMenuDescription();

}  // namespace kestro
