#include "linux/shell/LinuxLoginItems.h"

#include <algorithm>
#include <sstream>

#include "linux/storage/LinuxDirectories.h"
#include "linux/storage/WholeFile.h"

namespace kestro {
namespace {

// As an argument is quoted in Exec, by freedesktop.org's rules for desktop entries.
std::string quotedArgument(const std::string& argument) {
  std::string quoted = "\"";
  for (const char character : argument) {
    if (std::string_view("\"`$\\").find(character) != std::string_view::npos) quoted += "\\\\";
    quoted += character;
    if (character == '%') quoted += '%';
  }
  return quoted + "\"";
}

bool isLine(std::string line, std::string_view expected) {
  std::erase_if(line, [](char character) { return character == ' ' || character == '\r'; });
  return line == expected;
}

}  // namespace

bool LinuxLoginItems::startsAtLogin() const {
  const auto text = readWholeFile(file_);
  if (!text) return false;
  std::istringstream lines(*text);
  for (std::string line; std::getline(lines, line);) {
    if (isLine(line, "Hidden=true") || isLine(line, "X-GNOME-Autostart-enabled=false")) {
      return false;
    }
  }
  return true;
}

void LinuxLoginItems::setStartsAtLogin(bool starts) {
  const std::string text =
      "[Desktop Entry]\n"
      "Type=Application\n"
      "Name=Kestro Tracker\n"
      "Icon=com.kestro.KestroHelper\n"
      "Exec=" +
      quotedArgument(executable_) +
      "\nTerminal=false\nNoDisplay=true\nHidden=" + (starts ? "false" : "true") + "\n";
  const bool isWritten = makePrivateDirectory(file_.parent_path()) && replaceFile(file_, text);
  if (!isWritten) log_.write("launch at login cannot be set: the autostart file cannot be written");
}

}  // namespace kestro
