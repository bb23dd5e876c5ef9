#include "calls/CallPropertiesCoding.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace kestro {
namespace {

using Json = nlohmann::ordered_json;

constexpr Date referenceDate{std::chrono::seconds(978'307'200)};  // 2001-01-01, since 1970

double encoded(Date date) {
  return Seconds(date - referenceDate).count();
}

std::optional<Date> date(const Json& object, const char* key) {
  // 126 years: two such dates are no further apart than a duration here can tell.
  constexpr double furthest = 4e9;
  const auto found = object.find(key);
  if (found == object.end() || !found->is_number()) return std::nullopt;
  const double seconds = found->get<double>();
  if (!(std::abs(seconds) < furthest)) return std::nullopt;
  return referenceDate + std::chrono::round<Date::duration>(Seconds(seconds));
}

// False when the member is there and no text.
bool readText(const Json& object, const char* key, std::optional<std::string>& text) {
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) return true;
  if (!found->is_string()) return false;
  text = found->get<std::string>();
  return true;
}

std::optional<CallMetadata> metadata(const Json& object) {
  constexpr const char* flagKey = "audioInAndOutAssertionsHaveBeenRecordedSeparately";
  const auto found = object.find("metadata");
  if (found == object.end() || !found->is_object()) return std::nullopt;
  const auto flag = found->find(flagKey);
  if (flag == found->end() || !flag->is_boolean()) return std::nullopt;
  CallMetadata result;
  result.audioInAndOutAssertionsHaveBeenRecordedSeparately = flag->get<bool>();
  const bool isReadable = readText(*found, "serviceName", result.serviceName) &&
                          readText(*found, "appName", result.appName) &&
                          readText(*found, "meetingTitle", result.meetingTitle);
  return isReadable ? std::optional(result) : std::nullopt;
}

}  // namespace

Data encodedCallProperties(const CallProperties& call) {
  Json fields = Json::object();
  if (call.metadata.serviceName) fields["serviceName"] = *call.metadata.serviceName;
  if (call.metadata.appName) fields["appName"] = *call.metadata.appName;
  if (call.metadata.meetingTitle) fields["meetingTitle"] = *call.metadata.meetingTitle;
  fields["audioInAndOutAssertionsHaveBeenRecordedSeparately"] =
      call.metadata.audioInAndOutAssertionsHaveBeenRecordedSeparately;
  const Json object{{"startedAt", encoded(call.startedAt)},
                    {"lastSeen", encoded(call.lastSeen)},
                    {"metadata", std::move(fields)}};
  const std::string text = object.dump(-1, ' ', false, Json::error_handler_t::replace);
  return Data(text.begin(), text.end());
}

std::optional<CallProperties> decodedCallProperties(const Data& data) {
  const Json object = Json::parse(data.begin(), data.end(), nullptr, /*allow_exceptions=*/false);
  if (!object.is_object()) return std::nullopt;
  const auto startedAt = date(object, "startedAt");
  const auto lastSeen = date(object, "lastSeen");
  const auto fields = metadata(object);
  if (!startedAt || !lastSeen || !fields) return std::nullopt;
  return CallProperties{*startedAt, *lastSeen, *fields};
}

}  // namespace kestro
