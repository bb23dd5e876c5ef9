// Titles of any bytes through the clean-up: it never crashes, leaves no direction mark in the
// window title, and makes no title longer than its broken bytes explain.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "SceneProcess.h"
#include "probe/WindowTitleCleanup.h"

namespace {

// A broken byte may become the three bytes of U+FFFD.
constexpr std::size_t growth = 3;

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static kestro::SceneProcess scene("{}");
  static const kestro::WindowTitleCleanup cleanup(scene.process());
  const std::string title(data, data + size);
  kestro::RunningApplication mail;
  mail.bundleIdentifier = "com.apple.mail";
  kestro::Activity activity(mail, {});
  activity.details.windowTitle = title;
  activity.details.documentTitle = title;
  cleanup.apply(activity);
  const std::string& cleaned = *activity.details.windowTitle;
  require(cleaned.find("\u200e") == std::string::npos);
  require(cleaned.find("\u200f") == std::string::npos);
  require(cleaned.size() <= growth * title.size());
  require(activity.details.documentTitle->size() <= growth * title.size());
  return 0;
}
