// kestroctl: the helper's commands for people and scripts.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <limits>

#include "control/HelperClient.h"
#include "control/PauseDuration.h"
#include "control/StatusText.h"
#include "control/TrackedDay.h"
#include "linux/storage/LinuxDirectories.h"

namespace kestro {
namespace {

constexpr int failureStatus = 1;
constexpr int usageStatus = 2;
constexpr int noHelperStatus = 3;

int fail(const std::string& reason, int status) {
  std::cerr << "kestroctl: " << reason << std::endl;
  return status;
}

int reportNoHelper() {
  return fail("no helper is running", noHelperStatus);
}

int resultOf(const HelperAnswer<Done>& answer) {
  if (std::holds_alternative<NoHelper>(answer)) return reportNoHelper();
  if (const auto* failure = std::get_if<HelperFailure>(&answer)) {
    return fail(failure->reason, failureStatus);
  }
  return 0;
}

int showStatus(bool asJson) {
  const auto answer = HelperClient().status();
  if (const auto* failure = std::get_if<HelperFailure>(&answer)) {
    return fail(failure->reason, failureStatus);
  }
  const auto* status = std::get_if<HelperStatus>(&answer);
  if (asJson) {
    std::cout << statusJson(status ? std::optional(*status) : std::nullopt) << std::endl;
  } else if (status) {
    std::cout << statusText(*status, std::time(nullptr)) << std::flush;
  }
  return status ? 0 : reportNoHelper();
}

int pause(const std::string& duration) {
  std::optional<std::uint32_t> seconds = 0;
  if (!duration.empty()) {
    seconds = parsePauseDuration(duration, std::chrono::system_clock::now(), TimeZone::local());
  }
  if (!seconds) {
    return fail("'" + duration + "' is no duration: write 90s, 30m, 1h, 1h30m or tomorrow",
                usageStatus);
  }
  return resultOf(HelperClient().pause(*seconds));
}

std::filesystem::path databaseFile() {
  const char* directory = std::getenv("KESTRO_DATA_DIR");
  const bool isGiven = directory && *directory;
  return (isGiven ? std::filesystem::path(directory) : defaultDataDirectory()) / "Kestro.sqlite";
}

TrackedSpan today() {
  const TimeZone timeZone = TimeZone::local();
  const Date now = std::chrono::system_clock::now();
  const auto seconds = [](Date date) { return Seconds(date.time_since_epoch()).count(); };
  return {seconds(timeZone.midnight(now, 0)), seconds(timeZone.midnight(now, 1))};
}

int showDay(bool asJson, bool allDays) {
  constexpr double end = 1e12;  // of all days
  try {
    const TrackedDay day = readTrackedDay(databaseFile(), allDays ? TrackedSpan{0, end} : today());
    std::cout << (asJson ? trackedDayJson(day) + "\n" : trackedDayText(day)) << std::flush;
    return 0;
  } catch (const std::exception& failure) {
    return fail(failure.what(), failureStatus);
  }
}

// What the command line asks for: set by the callback of the command that was given.
class CommandLine {
 public:
  CommandLine() {
    application_.set_version_flag("--version", std::string("kestroctl ") + KESTRO_VERSION);
    application_.require_subcommand(1);
    addStatus();
    addPause();
    add("resume", "Go on tracking", [] { return resultOf(HelperClient().resume()); });
    addStart();
    add("stop", "Stop the timer and save its time",
        [] { return resultOf(HelperClient().stopTimer()); });
    addOpen();
    addToday();
  }

  int run(int argumentCount, char** arguments) {
    try {
      application_.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
      return application_.exit(error) == 0 ? 0 : usageStatus;
    }
    return perform_();
  }

 private:
  CLI::App* add(const char* name, const char* meaning, std::function<int()> perform) {
    CLI::App* command = application_.add_subcommand(name, meaning);
    command->callback([this, perform = std::move(perform)] { perform_ = perform; });
    return command;
  }

  void addStatus() {
    CLI::App* command = add("status", "Tracking, pause, timer, call, time tracked today",
                            [this] { return showStatus(asJson_); });
    command->add_flag("--json", asJson_, "One JSON object");
  }
  void addPause() {
    CLI::App* command = add("pause", "Pause tracking for a while, or until it is resumed",
                            [this] { return pause(text_); });
    command->add_option("DURATION", text_, "90s, 30m, 1h, 1h30m or tomorrow");
  }
  void addStart() {
    CLI::App* command =
        add("start", "Start the timer; one that runs is stopped and saved first",
            [this] { return resultOf(HelperClient().startTimer(text_, project_)); });
    command->add_option("TITLE", text_, "What the time is for");
    command->add_option("--project", project_, "The project's name");
  }
  void addOpen() {
    CLI::App* command = add("open", "Open an address that begins with kestro:", [this] {
      return resultOf(HelperClient().openAddress(text_));
    });
    command->add_option("ADDRESS", text_)->required();
  }
  void addToday() {
    CLI::App* command = add("today", "Time by application and project, from the database",
                            [this] { return showDay(asJson_, allDays_); });
    command->add_flag("--json", asJson_, "One JSON object");
    command->add_flag("--all", allDays_, "Of all days instead");
  }

  CLI::App application_{"Asks and commands the Kestro tracker.", "kestroctl"};
  std::function<int()> perform_;
  bool asJson_ = false;
  bool allDays_ = false;
  std::string text_;
  std::string project_;
};

}  // namespace
}  // namespace kestro

int main(int argumentCount, char** arguments) {
  return kestro::CommandLine().run(argumentCount, arguments);
}
