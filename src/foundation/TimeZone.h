// A time zone by its IANA name. A plain value; usable on any thread.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string_view>

#include "foundation/Date.h"

namespace kestro {

class TimeZone {
 public:
  static TimeZone utc();
  // The zone of this machine; UTC when it is not known.
  static TimeZone local();
  // Absent when no zone has this name.
  static std::optional<TimeZone> named(std::string_view name);

  // What has to be added to UTC for the zone's own time at that moment.
  std::chrono::seconds offset(Date date) const;
  // The midnight at which the zone's day of that moment begins, or one of so many days later.
  Date midnight(Date date, int daysLater) const;

 private:
  struct Rules;
  explicit TimeZone(std::shared_ptr<const Rules> rules);

  std::shared_ptr<const Rules> rules_;
};

}  // namespace kestro
