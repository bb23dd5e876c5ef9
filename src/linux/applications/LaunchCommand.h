// What starts an application: the Exec line of its desktop file, by freedesktop.org's
// rules for desktop entries.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

// The program and its arguments, without the places for files and addresses ("%U"). Empty: the line
// names none, or a quotation does not end.
std::vector<std::string> launchCommand(std::string_view exec);

// The whole path of a program, looked for where the session looks. Absent: there is none that can
// be run.
std::optional<std::string> programInPath(const std::string& name);

}  // namespace kestro
