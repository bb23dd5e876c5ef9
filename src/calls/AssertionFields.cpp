#include "calls/AssertionFields.h"

#include <utility>

namespace kestro {

std::optional<ProcessIdentifier> AssertionFields::onBehalfOfPID() const {
  const auto number = value<std::int64_t>("AssertionOnBehalfOfPID");
  if (!number || !std::in_range<ProcessIdentifier>(*number)) return std::nullopt;
  return static_cast<ProcessIdentifier>(*number);
}

std::optional<std::set<std::string>> AssertionFields::resourcesUsed() const {
  const auto list = value<PropertyListArray>("ResourcesUsed");
  if (!list) return std::nullopt;
  std::set<std::string> resources;
  for (const PropertyList& member : *list) {
    const auto* text = member.get<std::string>();
    if (!text) return std::nullopt;
    resources.insert(*text);
  }
  return resources;
}

}  // namespace kestro
