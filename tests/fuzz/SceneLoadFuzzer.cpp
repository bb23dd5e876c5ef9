// Any bytes as a scene: loading answers with a scene or an error. A scene that loads is made into a
// desktop and read, and its steps are played.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <variant>

#include "scene/SceneDesktop.h"

namespace kestro {
namespace {

constexpr int deepestRead = 4;

void readElement(Accessibility& accessibility, const UIElement& element, int depth) {
  const auto names = accessibility.copyAttributeNames(element);
  if (!names.value || depth == deepestRead) return;
  for (const std::string& name : *names.value) {
    accessibility.attributeValueCount(element, name);
    const auto read = accessibility.copyAttributeValue(element, name);
    if (!read.value) continue;
    if (const auto* other = read.value->get<UIElement>()) {
      readElement(accessibility, *other, depth + 1);
    } else {
      accessibility.setAttributeValue(element, name, *read.value);
    }
  }
  accessibility.copyElementAtPosition(element, 10, 10);
}

void readDesktop(Platform& platform) {
  platform.windowServer.onScreenWindows();
  const auto frontmost = platform.workspace.frontmostApplication();
  if (!frontmost) return;
  const auto element = platform.accessibility.applicationElement(frontmost->processIdentifier);
  if (element) readElement(platform.accessibility, *element, 0);
}

// Some lives, each reading now and then, so that an input takes milliseconds.
void play(Desktop& desktop) {
  constexpr int mostLives = 3;
  constexpr int mostSamples = 20;
  Platform& platform = desktop.platform();
  for (int life = 0; life < mostLives; ++life) {
    int samples = 0;
    const auto timer = platform.runLoop.scheduleEvery(Seconds(1), [&] {
      readDesktop(platform);
      if (++samples == mostSamples) platform.runLoop.stop(0);
    });
    platform.runLoop.run();
    if (!desktop.beginNextProcessLife()) return;
  }
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  auto loaded = kestro::loadSceneText(text, "input");
  auto* scene = std::get_if<kestro::Scene>(&loaded);
  if (!scene) return 0;
  kestro::DesktopOptions options;
  options.dataDirectory = std::filesystem::temp_directory_path();
  const auto desktop = kestro::makeSceneDesktop(std::move(*scene), std::move(options));
  kestro::play(*desktop);
  return 0;
}
