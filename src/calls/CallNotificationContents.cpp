#include "calls/CallNotificationContents.h"

#include "calls/CallPropertiesCoding.h"

namespace kestro {
namespace {

constexpr const char* callPropertiesKey = "callProperties";
constexpr const char* bundleIdentifierKey = "bundleIdentifier";

}  // namespace

PropertyListDictionary callNotificationUserInfo(const std::string& bundleIdentifier,
                                                const CallProperties& call) {
  return {{callPropertiesKey, encodedCallProperties(call)},
          {bundleIdentifierKey, bundleIdentifier}};
}

std::optional<std::string> bundleIdentifierOf(const PropertyListDictionary& userInfo) {
  const PropertyList* value = userInfo.find(bundleIdentifierKey);
  const auto* text = value ? value->get<std::string>() : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

std::optional<CallProperties> callPropertiesOf(const PropertyListDictionary& userInfo) {
  const PropertyList* value = userInfo.find(callPropertiesKey);
  const auto* data = value ? value->get<Data>() : nullptr;
  return data ? decodedCallProperties(*data) : std::nullopt;
}

}  // namespace kestro
