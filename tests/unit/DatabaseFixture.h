// A database with an activity writer in a process of its own, and what another process sees of it.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>

#include "FakePlatform.h"
#include "platform/Process.h"
#include "product/Activity.h"
#include "product/ActivityWriter.h"
#include "product/DatabaseWrapper.h"

namespace kestro {

inline constexpr Date startOfTest{std::chrono::seconds(1'772'442'000)};

inline Date at(double seconds) {
  return startOfTest + std::chrono::round<Date::duration>(Seconds(seconds));
}

inline Activity activity(std::string_view title) {
  RunningApplication application;
  application.processIdentifier = 42;
  ActivityDetails details;
  details.windowTitle = title;
  return {application, details};
}

struct TitleSample {
  double time;
  std::string_view title;  // "-": nothing to track
};

class DatabaseFixture : public testing::Test {
 protected:
  DatabaseFixture() { fake.runLoop.setNow(startOfTest); }

  ActivityWriter& writer() { return *DatabaseWrapper::sharedInstance(*process)->activityWriter(); }
  void restart() {
    process.reset();
    process = std::make_unique<Process>(fake.platform);
  }
  std::filesystem::path file() const { return fake.directory.path() / "Kestro.sqlite"; }

  void write(const TitleSample& sample) {
    if (sample.title == "-") {
      writer().writeNoActivity(at(sample.time));
    } else {
      writer().write(at(sample.time), activity(sample.title));
    }
  }

  // What another process sees, as "title start-end" in seconds of the test.
  std::string rows() const {
    SQLite::Database database(file().string());
    SQLite::Statement query(database,
                            "SELECT window_title, start, end FROM activities ORDER BY start, end");
    const double start = Seconds(startOfTest.time_since_epoch()).count();
    std::string text;
    while (query.executeStep()) {
      text += fmt::format("{}{} {:.10g}-{:.10g}", text.empty() ? "" : ", ",
                          query.getColumn(0).getString(),
                          std::round((query.getColumn(1).getDouble() - start) * 1000) / 1000,
                          std::round((query.getColumn(2).getDouble() - start) * 1000) / 1000);
    }
    return text;
  }

  void makeFile(std::string_view schema) const {
    SQLite::Database(file().string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec(std::string(schema));
  }
  bool hasLogLine(std::string_view part) const {
    return std::ranges::any_of(fake.log.lines, [&](const std::string& line) {
      return line.find(part) != std::string::npos;
    });
  }

  // As a bad disk does, in every page but the first.
  void damage() {
    SQLite::Database& database = DatabaseWrapper::sharedInstance(*process)->db();
    database.exec("PRAGMA wal_checkpoint(TRUNCATE)");
    std::fstream pages(file(), std::ios::in | std::ios::out | std::ios::binary);
    pages.seekp(4096) << std::string(std::filesystem::file_size(file()) - 4096, '#') << std::flush;
    database.exec("PRAGMA shrink_memory");  // so that it reads the file again
  }

  fakes::FakePlatform fake;
  std::unique_ptr<Process> process = std::make_unique<Process>(fake.platform);
};

}  // namespace kestro
