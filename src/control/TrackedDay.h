// What the database holds of a span of time: how long which application was used, and how long was
// recorded for which project. Read beside a helper that writes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

struct TrackedSpan {
  double from;  // seconds since 1970
  double to;
};

struct TrackedApplication {
  std::string name;
  std::string identifier;
  double seconds = 0;
  std::int64_t activities = 0;
};

struct TrackedProject {
  std::optional<std::string> name;  // absent: of entries without one
  double seconds = 0;
};

struct TrackedDay {
  double seconds = 0;
  std::vector<TrackedApplication> applications;  // the longest first
  std::vector<TrackedProject> projects;          // the same
};

// Throws std::exception with the reason where the file cannot be read.
TrackedDay readTrackedDay(const std::filesystem::path& database, TrackedSpan span);

std::string trackedDayText(const TrackedDay& day);
std::string trackedDayJson(const TrackedDay& day);

}  // namespace kestro
