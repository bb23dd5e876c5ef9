#include "control/StatusText.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "control/Terminal.h"
#include "foundation/Iso8601.h"

namespace kestro {
namespace {

nlohmann::ordered_json dateOrNull(std::int64_t secondsSince1970) {
  if (secondsSince1970 == 0) return nullptr;
  return iso8601(Date(std::chrono::seconds(secondsSince1970)));
}

std::string row(std::string_view name, const std::string& value) {
  return fmt::format("  {:<10} {}\n", name, value);
}

std::string trackingText(const HelperStatus& status, std::int64_t now) {
  if (status.isTracking) return emphasized("● tracking", Emphasis::good);
  if (status.pausedUntil == 0) {
    return emphasized("❙❙ paused", Emphasis::attention) + " until you resume";
  }
  return emphasized("❙❙ paused", Emphasis::attention) +
         fmt::format(" until {}, for {} more", localTime(status.pausedUntil),
                     shortDuration(static_cast<double>(status.pausedUntil - now)));
}

}  // namespace

std::string statusText(const HelperStatus& status, std::int64_t now) {
  std::string text = "Kestro " + trackingText(status, now) + "\n";
  text += row("Today", shortDuration(status.trackedToday));
  text +=
      row("Timer", status.timerStarted == 0
                       ? emphasized("none", Emphasis::faint)
                       : fmt::format("running for {}, since {}",
                                     shortDuration(static_cast<double>(now - status.timerStarted)),
                                     localTime(status.timerStarted)));
  text += row("Call", status.isInCall ? emphasized("under way", Emphasis::attention)
                                      : emphasized("none", Emphasis::faint));
  return text;
}

std::string statusJson(const std::optional<HelperStatus>& status) {
  const HelperStatus shown = status.value_or(HelperStatus());
  nlohmann::ordered_json json;
  json["running"] = status.has_value();
  json["tracking"] = shown.isTracking;
  json["pausedUntil"] = dateOrNull(shown.pausedUntil);
  json["timer"] = {{"running", shown.timerStarted != 0}, {"since", dateOrNull(shown.timerStarted)}};
  json["inCall"] = shown.isInCall;
  json["trackedTodaySeconds"] = shown.trackedToday;
  json["version"] = status ? shown.version : KESTRO_VERSION;
  return json.dump();
}

}  // namespace kestro
