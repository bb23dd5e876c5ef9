#include "app/RelaunchScript.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace kestro {
namespace {

constexpr double longestDelay = 24 * 60 * 60;

std::int64_t wholeSeconds(Seconds delay) {
  if (std::isnan(delay.count())) return 0;
  return static_cast<std::int64_t>(std::trunc(std::clamp(delay.count(), 0.0, longestDelay)));
}

// Between double quotes only four characters mean something to a shell that is not interactive
// (POSIX, Shell Command Language, 2.2.3). "!" is none of them: escaped, it would keep the
// backslash.
std::string doubleQuoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char character : text.substr(0, text.find('\0'))) {
    if (std::string_view("\\\"$`").find(character) != std::string_view::npos) quoted += '\\';
    quoted += character;
  }
  return quoted + '"';
}

bool isOrdinary(char character) {
  constexpr std::string_view others = "/._-+";
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || others.find(character) != std::string_view::npos;
}

// As a command: quoted only when it has to be.
std::string commandWord(const std::string& program) {
  const bool isPlain = !program.empty() && std::ranges::all_of(program, isOrdinary);
  return isPlain ? program : doubleQuoted(program);
}

}  // namespace

std::string relaunchScript(const RelaunchScriptArguments& arguments) {
  return fmt::format(
      "/bin/sleep {delay}; /bin/kill -0 {process} >&/dev/null && /bin/kill {process}; "
      "(for i in {{1..{delay}}}; do /bin/sleep 1; /bin/kill -0 {process} >&/dev/null || break; "
      "done; /bin/kill -0 {process} >&/dev/null && /bin/kill -9 {process} && /bin/sleep {delay}; "
      "{opener} {opened}) &",
      fmt::arg("delay", wholeSeconds(arguments.delay)),
      fmt::arg("process", arguments.processIdentifier),
      fmt::arg("opener", commandWord(arguments.opener)),
      fmt::arg("opened", doubleQuoted(arguments.opened)));
}

}  // namespace kestro
