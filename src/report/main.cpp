// Prints what a database of activities holds: how long which application was used, or its rows.
#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "product/KestroDatabase.h"

namespace kestro {
namespace {

constexpr int failureStatus = 2;

struct ApplicationTime {
  std::string name;
  double seconds = 0;
  std::int64_t activities = 0;
};

std::string duration(double seconds) {
  const auto whole = std::llround(seconds);
  return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

// Titles come from anywhere; none may steer the terminal or break a line.
std::string printable(const std::string& text) {
  std::string line = removingInvisibleControlCharacters(text);
  std::ranges::replace(line, '\t', ' ');
  std::ranges::replace(line, '\n', ' ');
  return line;
}

std::vector<ApplicationTime> timesByApplication(SQLite::Database& database) {
  SQLite::Statement query(
      database,
      "SELECT coalesce(application_name, application_bundle_identifier, '(unknown)') AS name,"
      " sum(end - start), count(*) FROM activities GROUP BY name ORDER BY 2 DESC, name");
  std::vector<ApplicationTime> times;
  while (query.executeStep()) {
    times.push_back({printable(query.getColumn(0).getString()), query.getColumn(1).getDouble(),
                     query.getColumn(2).getInt64()});
  }
  return times;
}

void printSummary(SQLite::Database& database) {
  const auto times = timesByApplication(database);
  double total = 0;
  std::size_t width = std::string_view("Application").size();
  for (const ApplicationTime& time : times) {
    total += time.seconds;
    width = std::max(width, fmt::formatted_size("{}", time.name));
  }
  width = std::min<std::size_t>(width, 40);
  fmt::print("Tracked time: {}\n", duration(total));
  if (times.empty()) return;
  fmt::print("\n{:<{}}  {:>10}  {:>6}  {:>10}\n", "Application", width, "Time", "Share",
             "Activities");
  for (const ApplicationTime& time : times) {
    const double share = total > 0 ? 100 * time.seconds / total : 0;
    fmt::print("{:<{}}  {:>10}  {:>5.1f}%  {:>10}\n", time.name, width, duration(time.seconds),
               share, time.activities);
  }
}

void printRows(SQLite::Database& database) {
  SQLite::Statement query(
      database,
      "SELECT datetime(start, 'unixepoch', 'localtime'), end - start,"
      " coalesce(application_name, application_bundle_identifier, '(unknown)'),"
      " coalesce(window_title, ''), coalesce(document_title, ''), coalesce(document_path, ''),"
      " coalesce(context_path, '') FROM activities ORDER BY start");
  while (query.executeStep()) {
    std::string line = fmt::format("{}  {:>8}  {}", query.getColumn(0).getString(),
                                   duration(query.getColumn(1).getDouble()),
                                   printable(query.getColumn(2).getString()));
    for (int column = 3; column < query.getColumnCount(); ++column) {
      const std::string text = printable(query.getColumn(column).getString());
      if (!text.empty()) line += "  " + text;
    }
    fmt::print("{}\n", line);
  }
}

void report(const std::string& path, bool rows) {
  if (!std::filesystem::is_regular_file(path)) throw std::runtime_error("there is no such file");
  SQLite::Database database(path, SQLite::OPEN_READONLY, 1000);
  if (!database.tableExists("activities")) {
    throw std::runtime_error("this is no database of activities");
  }
  if (rows) {
    printRows(database);
  } else {
    printSummary(database);
  }
}

int run(const std::vector<std::string_view>& arguments) {
  const bool rows = std::ranges::count(arguments, "--rows") > 0;
  std::vector<std::string_view> paths;
  std::ranges::remove_copy(arguments, std::back_inserter(paths), "--rows");
  if (paths.size() != 1 || paths.front().starts_with("--")) {
    fmt::print(stderr, "usage: KestroReport [--rows] DATABASE\n");
    return failureStatus;
  }
  try {
    report(std::string(paths.front()), rows);
  } catch (const std::exception& failure) {
    fmt::print(stderr, "KestroReport: {}: {}\n", paths.front(), failure.what());
    return failureStatus;
  }
  return 0;
}

}  // namespace
}  // namespace kestro

int main(int argumentCount, char** arguments) {
  return kestro::run({arguments + 1, arguments + argumentCount});
}
