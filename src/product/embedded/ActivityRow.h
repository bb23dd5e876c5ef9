// One row of the table of activities.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "foundation/Date.h"

namespace kestro {

class Activity;

// Whole milliseconds: exact in the database's real seconds, so that equal times stay equal.
using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

inline Instant instant(Date time) {
  return std::chrono::floor<std::chrono::milliseconds>(time);
}

// What one sample says, apart from its time. Texts of unreasonable length are cut.
struct ActivityFields {
  explicit ActivityFields(const Activity& activity);

  std::optional<std::string> applicationBundleIdentifier;
  std::optional<std::string> applicationName;
  std::optional<std::string> applicationExecutableURL;
  std::int32_t applicationProcessIdentifier = 0;
  bool isFullscreen = false;
  bool isShowingSavePanel = false;
  std::optional<std::string> windowTitle;
  std::optional<std::string> documentTitle;
  std::optional<std::string> documentPath;
  std::optional<std::string> contextPath;  // a JSON array of texts
  bool isPrivateBrowsing = false;

  bool operator==(const ActivityFields&) const = default;
};

struct ActivityRow {
  ActivityFields fields;
  Instant start;
  Instant end;
  std::optional<std::int64_t> identifier;  // absent until it is in the database
  bool isUnsaved = true;
};

}  // namespace kestro
