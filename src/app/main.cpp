// The entry point: chooses the desktop and runs the helper on it, as the environment says
// (README.md, "Use it").
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "app/LaunchSwitches.h"
#include "app/runHelper.h"
#include "foundation/PrivateFiles.h"
#include "foundation/TimeZone.h"
#include "linux/LinuxDesktop.h"
#include "scene/RemovalAtSignal.h"
#include "scene/SceneDesktop.h"
#include "transcript/makeTranscriptWriter.h"

namespace kestro {
namespace {

constexpr int usageError = 2;
constexpr int alreadyRunningStatus = 3;
constexpr double slowestScene = 0.001;  // a second of a scene in a quarter of an hour

std::optional<std::string> environment(const char* name) {
  const char* value = std::getenv(name);
  return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

int refuse(std::string_view reason) {
  std::cerr << "KestroHelper: " << reason << std::endl;
  return usageError;
}

// What the environment asks for. Absent parts were not asked for.
struct Settings {
  std::optional<std::string> scene;
  std::optional<double> sceneSpeed;
  std::optional<std::string> transcript;
  TranscriptFormat transcriptFormat = TranscriptFormat::jsonLines;
};

// The settings, or why they cannot be used.
std::variant<Settings, std::string> readSettings() {
  Settings settings;
  settings.scene = environment("KESTRO_SCENE");
  settings.transcript = environment("KESTRO_TRANSCRIPT");
  if (const auto speed = environment("KESTRO_SCENE_SPEED")) {
    double factor = 0;
    const auto [end, error] = std::from_chars(speed->data(), speed->data() + speed->size(), factor);
    const bool isNumber = error == std::errc{} && end == speed->data() + speed->size();
    if (!isNumber || !std::isfinite(factor) || factor < slowestScene) {
      return "KESTRO_SCENE_SPEED must be a number of at least 0.001, not '" + *speed + "'";
    }
    settings.sceneSpeed = factor;
  }
  const std::string format = environment("KESTRO_TRANSCRIPT_FORMAT").value_or("json");
  if (format != "json" && format != "text") {
    return "KESTRO_TRANSCRIPT_FORMAT must be json or text, not '" + format + "'";
  }
  if (format == "text") settings.transcriptFormat = TranscriptFormat::readable;
  return settings;
}

class Helper {
 public:
  Helper(Settings settings, std::vector<std::string> arguments)
      : settings_(std::move(settings)), arguments_(std::move(arguments)) {}

  int run() {
    if (!openTranscript()) return refuseTranscript();
    const int exitStatus = settings_.scene ? runScene() : runLive();
    if (settings_.transcript && !transcriptStream().flush()) return refuseTranscript();
    return exitStatus;
  }

 private:
  // A transcript holds what was read from the desktop: a new file is the owner's alone.
  bool openTranscript() {
    if (!settings_.transcript || settings_.transcript == "-") return true;
    std::error_code error;
    if (!std::filesystem::exists(*settings_.transcript, error)) {
      try {
        createPrivateFile(*settings_.transcript);
      } catch (const std::filesystem::filesystem_error&) {
        return false;
      }
    }
    // A helper that has relaunched itself goes on where the one before it ended.
    transcriptFile_.open(*settings_.transcript, settings_.scene ? std::ios::trunc : std::ios::app);
    if (!transcriptFile_.is_open()) return false;
    return true;
  }

  int refuseTranscript() const {
    return refuse("cannot write the transcript to " + *settings_.transcript);
  }

  std::ostream& transcriptStream() {
    return transcriptFile_.is_open() ? transcriptFile_ : std::cout;
  }

  int runScene() {
    auto loaded = loadScene(*settings_.scene);
    if (const auto* error = std::get_if<SceneError>(&loaded)) return refuse(error->message);
    auto& scene = std::get<Scene>(loaded);
    auto options = desktopOptions(scene.start, scene.timeZone);
    const auto desktop =
        makeSceneDesktop(std::move(scene), std::move(options), settings_.sceneSpeed);
    std::optional<RemovalAtSignal> removal;
    if (!environment("KESTRO_DATA_DIR")) removal.emplace(desktop->platform().dataDirectory);
    return runHelper(*desktop);
  }

  int runLive() {
    auto options = desktopOptions(std::chrono::system_clock::now(), TimeZone::local());
    options.servesSession = !isDump(launchOf(arguments_));
    const auto desktop = makeLinuxDesktop(std::move(options));
    if (!desktop) {
      std::cerr << "KestroHelper: another helper is running in this session" << std::endl;
      return alreadyRunningStatus;
    }
    return runHelper(*desktop);
  }

  DesktopOptions desktopOptions(Date start, const TimeZone& timeZone) {
    DesktopOptions options;
    options.arguments = arguments_;
    options.dataDirectory = environment("KESTRO_DATA_DIR");
    // A transcript there holds what is printed.
    if (settings_.transcript != "-") options.standardOutput = &std::cout;
    if (!settings_.transcript) options.standardError = &std::cerr;
    if (!settings_.transcript) return options;
    options.transcriptWriter =
        makeTranscriptWriter(transcriptStream(), settings_.transcriptFormat, start, timeZone);
    return options;
  }

  Settings settings_;
  std::vector<std::string> arguments_;
  std::ofstream transcriptFile_;
};

}  // namespace
}  // namespace kestro

int main(int argumentCount, char** arguments) {
  auto settings = kestro::readSettings();
  if (const auto* reason = std::get_if<std::string>(&settings)) return kestro::refuse(*reason);
  kestro::Helper helper(std::get<kestro::Settings>(std::move(settings)),
                        {arguments + 1, arguments + argumentCount});
  try {
    return helper.run();
  } catch (const std::exception& failure) {  // a data directory or a run loop that cannot be made
    return kestro::refuse(failure.what());
  }
}
