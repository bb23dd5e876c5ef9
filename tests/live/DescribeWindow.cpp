// Prints the frontmost window's tree as extractors see it on the live desktop, for those who write
// extractors: describe_window [LEVELS]. It asks the application for its whole tree first, which may
// take a while.
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <thread>

#include "extractors/AccessibilityDescription.h"
#include "linux/LinuxDesktop.h"
#include "platform/Process.h"

namespace kestro {
namespace {

constexpr std::int64_t defaultLevels = 30;
constexpr std::chrono::seconds timeToShowTree{2};

int fail(const char* reason) {
  std::cerr << "describe_window: " << reason << std::endl;
  return 1;
}

int describeFrontmostWindow(std::int64_t levels) {
  DesktopOptions options;
  options.servesSession = false;  // it looks, beside a helper perhaps
  const auto desktop = makeLinuxDesktop(std::move(options));
  Process process(desktop->platform());
  const auto frontmost = process.platform().workspace.frontmostApplication();
  if (!frontmost) return fail("no application is in front");
  const auto handle =
      process.platform().accessibility.applicationElement(frontmost->processIdentifier);
  if (!handle) return fail("the application has no tree");
  const AccessibilityElement application(process, *handle);
  application.setNumberValue(true, attribute::enhancedUserInterface);
  application.elementAttribute(attribute::mainWindow);
  std::this_thread::sleep_for(timeToShowTree);
  const auto window = application.elementAttribute(attribute::mainWindow);
  if (!window) return fail("the application has no window");
  std::cout << "application " << frontmost->bundleIdentifier.value_or("(unknown)") << '\n'
            << treeDescription(*window, levels).value_or("") << std::endl;
  return 0;
}

}  // namespace
}  // namespace kestro

int main(int argumentCount, char** arguments) {
  std::int64_t levels = kestro::defaultLevels;
  if (argumentCount > 1) {
    const char* end = arguments[1] + std::strlen(arguments[1]);
    const auto parsed = std::from_chars(arguments[1], end, levels);
    if (parsed.ec != std::errc{} || parsed.ptr != end) return kestro::fail("LEVELS is a number");
  }
  return kestro::describeFrontmostWindow(levels);
}
